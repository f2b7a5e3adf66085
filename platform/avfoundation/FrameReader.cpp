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
    decoder_->flush();
    return demuxer_->seek(streamIndex_, time);
}

Result<bool> FrameReader::next(AVFrame& frame)
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
