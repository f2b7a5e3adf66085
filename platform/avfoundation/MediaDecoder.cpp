// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaDecoder_p.h"

#include "platform/avfoundation/FFmpegError_p.h"

#include <algorithm>
#include <thread>

namespace platform {

namespace {

constexpr std::int64_t greatestPixelCount = 8192LL * 8192;
constexpr int greatestChannelCount = 64;
constexpr int greatestThreadCount = 8;
// Errors in a row while draining before the decoder is taken to have ended.
constexpr int patience = 64;

bool isSane(const AVCodecParameters& parameters)
{
    if (parameters.codec_type == AVMEDIA_TYPE_VIDEO)
        return static_cast<std::int64_t>(parameters.width) * parameters.height <= greatestPixelCount;
    return parameters.ch_layout.nb_channels <= greatestChannelCount && parameters.sample_rate >= 0;
}

} // namespace

Result<std::unique_ptr<MediaDecoder>> MediaDecoder::open(const AVCodecParameters& parameters,
                                                         AVRational timeBase, AVRational frameRate,
                                                         const MediaDecoderOptions& options)
{
    if (!isSane(parameters))
        return failure(AVError::invalidSourceMedia);
    auto* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec)
        return failure(AVError::decoderNotFound);
    CodecContext context(avcodec_alloc_context3(codec));
    if (!context)
        return failure(AVError::outOfMemory);
    if (int code = avcodec_parameters_to_context(context.get(), &parameters); code < 0)
        return failure(mediaError(code, MediaWork::decode));
    context->pkt_timebase = timeBase;
    context->framerate = frameRate;
    context->max_pixels = greatestPixelCount;
    context->skip_frame = options.skipFrames;
    // Without it some decoders take a picture that they hold back for the end of all.
    context->flags |= AV_CODEC_FLAG_OUTPUT_CORRUPT;
    // One more than processors, as one always waits: for its turn to hand out what it has decoded.
    auto threads =
        options.threads > 0 ? options.threads : static_cast<int>(std::thread::hardware_concurrency()) + 1;
    context->thread_count = std::clamp(threads, 1, greatestThreadCount);
    if (int code = avcodec_open2(context.get(), codec, nullptr); code < 0)
        return failure(mediaError(code, MediaWork::decode));
    return std::unique_ptr<MediaDecoder>(new MediaDecoder(std::move(context), timeBase, frameRate));
}

MediaDecoder::MediaDecoder(CodecContext context, AVRational timeBase, AVRational frameRate)
    : context_(std::move(context))
    , timeBase_(timeBase)
    , frameRate_(frameRate)
{
}

Result<void> MediaDecoder::send(const AVPacket* packet)
{
    int code = avcodec_send_packet(context_.get(), packet);
    if (code == AVERROR(ENOMEM))
        return failure(mediaError(code, MediaWork::decode));
    if (code < 0 && code != AVERROR_EOF)
        lastDamage_ = code;
    return {};
}

Result<bool> MediaDecoder::receive(AVFrame& frame)
{
    for (int attempts = 0; attempts < patience;) {
        int code = avcodec_receive_frame(context_.get(), &frame);
        if (code >= 0) {
            // After a seek, what refers to pictures before it is of no use; in the middle a damaged one is better than
            // none.
            if (isSettling_ && (frame.flags & AV_FRAME_FLAG_CORRUPT)) {
                lastDamage_ = AVERROR_INVALIDDATA;
                hasSkipped_ = true;
                continue;
            }
            isSettling_ = false;
            completeTimes(frame);
            ++frameCount_;
            return true;
        }
        ++attempts;
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF)
            return false;
        if (code == AVERROR(ENOMEM))
            return failure(mediaError(code, MediaWork::decode));
        lastDamage_ = code;
    }
    return false;
}

void MediaDecoder::flush()
{
    avcodec_flush_buffers(context_.get());
    nextPts_ = AV_NOPTS_VALUE;
    isSettling_ = true;
    hasSkipped_ = false;
}

void MediaDecoder::completeTimes(AVFrame& frame)
{
    // Sound lasts as long as its samples; what the container says of a packet may count what was cut off.
    if (frame.nb_samples > 0 && frame.sample_rate > 0)
        frame.pkt_duration = av_rescale_q(frame.nb_samples, {1, frame.sample_rate}, timeBase_);
    else if (frame.pkt_duration <= 0 && frameRate_.num > 0 && frameRate_.den > 0)
        frame.pkt_duration = av_rescale_q(1, av_inv_q(frameRate_), timeBase_);
    frame.pkt_duration = std::max<std::int64_t>(frame.pkt_duration, 0);

    frame.pts = frame.best_effort_timestamp;
    if (frame.pts == AV_NOPTS_VALUE)
        frame.pts = nextPts_ == AV_NOPTS_VALUE ? 0 : nextPts_;
    if (__builtin_add_overflow(frame.pts, frame.pkt_duration, &nextPts_))
        nextPts_ = frame.pts;
}

} // namespace platform
