// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FrameReader_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/FFmpegError_p.h"

namespace platform {

namespace {

// What a decoder of sound needs before it gives what an uninterrupted one would: MP3 refers back by up to ten of its
// frames, Opus and the others by less.
constexpr AVRational settling{3, 10};

} // namespace

Result<std::unique_ptr<FrameReader>> FrameReader::open(const MediaSource& source, int stream,
                                                       std::stop_token stop,
                                                       const MediaDecoderOptions& options)
{
    auto& description = source.streams()[static_cast<std::size_t>(stream)];
    if (description.isProtected)
        return failure(AVError::contentIsProtected);
    auto& parameters = description.format->parameters();
    std::unique_ptr<FrameReader> reader(new FrameReader);
    reader->decoder_ =
        TRY(MediaDecoder::open(*parameters.codec, parameters.timeBase, parameters.frameRate, options));
    reader->demuxer_ = TRY(source.openDemuxer(std::move(stop)));
    reader->demuxer_->select({description.index});
    reader->packet_ = makePacket();
    reader->timeBase_ = parameters.timeBase;
    reader->streamIndex_ = description.index;
    return reader;
}

Result<void> FrameReader::seek(std::int64_t time)
{
    if (decoder_->context().codec_type == AVMEDIA_TYPE_AUDIO)
        time -= av_rescale_q(settling.num, {1, settling.den}, timeBase_);
    isDraining_ = false;
    wanted_ = place_ = time;
    decoder_->flush();
    return demuxer_->seek(streamIndex_, time);
}

Result<bool> FrameReader::next(AVFrame& frame)
{
    const auto second = av_rescale_q(1, {1, 1}, timeBase_);
    for (std::int64_t back = second;; back *= 2) {
        const bool hasFrame = TRY(decodeNext(frame));
        // Where no picture stands for itself, those from which decoding can begin are whole some pictures later only.
        const bool isWhole = !decoder_->hasSkipped() || (hasFrame && frame.pts <= wanted_);
        if (isWhole || wanted_ == INT64_MIN || place_ <= 0 || frame.nb_samples > 0) {
            wanted_ = INT64_MIN;
            return hasFrame;
        }
        av_frame_unref(&frame);
        place_ -= back;
        isDraining_ = false;
        decoder_->flush();
        TRY(demuxer_->seek(streamIndex_, place_));
    }
}

Result<bool> FrameReader::decodeNext(AVFrame& frame)
{
    while (!TRY(decoder_->receive(frame))) {
        if (isDraining_) {
            if (decoder_->frameCount() == 0 && decoder_->lastDamage() < 0)
                return failure(mediaError(decoder_->lastDamage(), MediaWork::decode));
            return false;
        }
        isDraining_ = !TRY(demuxer_->read(*packet_));
        auto sent = decoder_->send(isDraining_ ? nullptr : packet_.get());
        av_packet_unref(packet_.get());
        TRY(std::move(sent));
    }
    return true;
}

} // namespace platform
