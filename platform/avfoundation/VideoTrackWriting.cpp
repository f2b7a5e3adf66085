// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/TrackWriting_p.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

namespace platform {

namespace {

// What x264 calls a constant quality; 0.6 gives 20, and 6 more halve the size.
double constantRateFactor(double quality)
{
    return 38 - 30 * std::clamp(quality, 0.0, 1.0);
}

bool isEncodable(AVPixelFormat format)
{
    return format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_NV12;
}

// Pictures that are compressed on their way into the file.
class VideoTrackWriting final : public TrackWriting {
public:
    VideoTrackWriting(const TrackPlace& place, const VideoSettings& settings)
        : place_(place)
        , settings_(settings)
    {
    }

    Result<void> append(const CMSampleBuffer& sample, const CMTimeRange& session) override;
    Result<void> finish() override;

private:
    Result<void> open(const CMSampleBuffer& sample);
    void describeColor(const CVPixelBuffer& picture);
    // The picture in the encoder's size and form.
    Result<Frame> converted(const CVPixelBuffer& picture);
    Result<void> encodeFrame(const AVFrame* frame);

    const TrackPlace place_;
    const VideoSettings settings_;
    CodecContext encoder_;
    Scaler scaler_; // of the last picture that needed one
    Packet packet_ = makePacket();
    std::int64_t lastPts_ = AV_NOPTS_VALUE;
    // of the pictures that the encoder has; it forgets them
    std::map<std::int64_t, std::int64_t> durations_;
};

Result<void> VideoTrackWriting::open(const CMSampleBuffer& sample)
{
    auto& picture = *sample.imageBuffer;
    auto* codec = videoEncoder(settings_);
    if (!codec)
        return failure(AVError::encoderNotFound);
    encoder_.reset(avcodec_alloc_context3(codec));
    if (!encoder_)
        return failure(AVError::outOfMemory);
    auto even = [](int size) { return std::max(2, size / 2 * 2); };
    encoder_->width = settings_.AVVideoWidthKey.value_or(even(picture.width()));
    encoder_->height = settings_.AVVideoHeightKey.value_or(even(picture.height()));
    auto format = picture.frame().picture->format;
    encoder_->pix_fmt = isEncodable(static_cast<AVPixelFormat>(format)) ? static_cast<AVPixelFormat>(format)
                                                                        : AV_PIX_FMT_YUV420P;
    auto scale = place_.mediaTimeScale > 0 ? place_.mediaTimeScale : sample.presentationTimeStamp.timescale;
    encoder_->time_base = {1, std::max(scale, 1)};
    if (auto rate = settings_.AVVideoExpectedSourceFrameRateKey; rate && *rate > 0)
        encoder_->framerate = av_d2q(*rate, 1 << 16);
    auto aspect = settings_.AVVideoPixelAspectRatioKey.value_or(picture.pixelAspectRatio());
    encoder_->sample_aspect_ratio = av_d2q(aspect > 0 ? aspect : 1, 1 << 12);
    encoder_->gop_size = settings_.AVVideoMaxKeyFrameIntervalKey;
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    describeColor(picture);

    AVDictionary* options = nullptr;
    av_dict_set(&options, "preset", "veryfast", 0);
    if (!settings_.AVVideoAllowFrameReorderingKey)
        encoder_->max_b_frames = 0;
    if (settings_.AVVideoAverageBitRateKey) {
        encoder_->bit_rate = *settings_.AVVideoAverageBitRateKey;
    } else {
        av_dict_set(&options, "crf", std::to_string(constantRateFactor(settings_.AVVideoQualityKey)).c_str(),
                    0);
    }
    int code = avcodec_open2(encoder_.get(), codec, &options);
    av_dict_free(&options);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));

    CodecParameters parameters(avcodec_parameters_alloc());
    if (!parameters || avcodec_parameters_from_context(parameters.get(), encoder_.get()) < 0)
        return failure(AVError::outOfMemory);
    auto description = place_.description(std::move(parameters), encoder_->time_base);
    description.averageFrameRate = encoder_->framerate;
    return place_.muxer.describe(place_.track, std::move(description));
}

// Pictures keep their numbers, so the file says what the source said they mean. Numbers that were made from red,
// green and blue here are of the usual matrix for their size.
void VideoTrackWriting::describeColor(const CVPixelBuffer& picture)
{
    auto color = settings_.AVVideoColorPropertiesKey.value_or(picture.color());
    bool isRGB = picture.pixelFormatType() == CVPixelFormatType::BGRA32;
    if (isRGB && (color.matrix == AVCOL_SPC_RGB || color.matrix == AVCOL_SPC_UNSPECIFIED))
        color.matrix = encoder_->height > 576 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    encoder_->color_primaries = static_cast<AVColorPrimaries>(color.primaries);
    encoder_->color_trc = static_cast<AVColorTransferCharacteristic>(color.transfer);
    encoder_->colorspace = static_cast<AVColorSpace>(color.matrix);
    bool isFull = color.isFullRange && !isRGB;
    encoder_->color_range = isFull ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
}

Result<Frame> VideoTrackWriting::converted(const CVPixelBuffer& picture)
{
    auto& source = *picture.frame().picture;
    auto frame = makeFrame();
    if (source.width == encoder_->width && source.height == encoder_->height
        && source.format == encoder_->pix_fmt) {
        int code = av_frame_ref(frame.get(), &source);
        if (code < 0)
            return std::unexpected(mediaError(code, MediaWork::encode));
        return frame;
    }
    scaler_.reset(sws_getCachedContext(
        scaler_.release(), source.width, source.height, static_cast<AVPixelFormat>(source.format),
        encoder_->width, encoder_->height, encoder_->pix_fmt, SWS_BICUBIC, nullptr, nullptr, nullptr));
    frame->width = encoder_->width;
    frame->height = encoder_->height;
    frame->format = encoder_->pix_fmt;
    if (!scaler_ || av_frame_get_buffer(frame.get(), 0) < 0)
        return failure(AVError::outOfMemory);
    auto* table = sws_getCoefficients(encoder_->colorspace);
    bool isFull = encoder_->color_range == AVCOL_RANGE_JPEG;
    bool sourceIsFull = picture.color().isFullRange || picture.pixelFormatType() == CVPixelFormatType::BGRA32;
    sws_setColorspaceDetails(scaler_.get(), table, sourceIsFull, table, isFull, 0, 1 << 16, 1 << 16);
    int code = sws_scale(scaler_.get(), source.data, source.linesize, 0, source.height, frame->data,
                         frame->linesize);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    return frame;
}

Result<void> VideoTrackWriting::append(const CMSampleBuffer& sample, const CMTimeRange& session)
{
    if (!sample.imageBuffer)
        return failure(AVError::operationNotSupportedForAsset);
    if (!encoder_)
        TRY(open(sample));
    auto begin = sample.presentationTimeStamp - session.start;
    auto end = begin + sample.duration;
    if (session.end().isNumeric())
        end =
            CMTimeMinimum(end.isNumeric() ? end : CMTime::positiveInfinity(), session.end() - session.start);
    if (begin >= session.end() - session.start)
        return {};
    if (begin < CMTime::zero()) {
        if (end.isNumeric() && end <= CMTime::zero())
            return {};
        begin = CMTime::zero();
    }
    auto pts = ticks(begin, encoder_->time_base);
    if (pts == AV_NOPTS_VALUE || (lastPts_ != AV_NOPTS_VALUE && pts < lastPts_))
        return failure(AVError::invalidSourceMedia);
    // Of two pictures in one tick nobody would see the first for any time; the file cannot hold both.
    if (pts == lastPts_)
        return {};
    lastPts_ = pts;
    if (end.isNumeric())
        durations_[pts] = std::max<std::int64_t>(ticks(end, encoder_->time_base) - pts, 1);

    auto frame = TRY(converted(*sample.imageBuffer));
    frame->pts = pts;
    frame->pict_type = AV_PICTURE_TYPE_NONE; // the source's choice does not bind the encoder
    return encodeFrame(frame.get());
}

Result<void> VideoTrackWriting::encodeFrame(const AVFrame* frame)
{
    return encode(*encoder_, frame, *packet_, [&](AVPacket& packet) {
        if (auto found = durations_.find(packet.pts); found != durations_.end()) {
            packet.duration = found->second;
            durations_.erase(found);
        }
        return place_.muxer.write(place_.track, packet);
    });
}

Result<void> VideoTrackWriting::finish()
{
    return encoder_ ? encodeFrame(nullptr) : place_.muxer.drop(place_.track);
}

} // namespace

const AVCodec* videoEncoder(const VideoSettings& settings)
{
    auto isSize = [](std::optional<int> size) {
        return !size || (*size >= 2 && *size <= 8192 && *size % 2 == 0);
    };
    if (settings.AVVideoCodecKey != AVVideoCodecTypeH264 || !isSize(settings.AVVideoWidthKey)
        || !isSize(settings.AVVideoHeightKey))
        return nullptr;
    return avcodec_find_encoder_by_name("libx264");
}

std::unique_ptr<TrackWriting> makeVideoTrackWriting(const TrackPlace& place, const VideoSettings& settings)
{
    return std::make_unique<VideoTrackWriting>(place, settings);
}

} // namespace platform
