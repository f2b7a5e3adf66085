// SPDX-License-Identifier: MIT
#include "platform/avfoundation/StillDecoder_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/FFmpegError_p.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// How often to begin further back, each time at the key picture before.
constexpr int greatestAttemptCount = 4;

// Pictures are decoded in full although they are shown small: without the loop filter an eighth of the time is saved, but
// errors add up from picture to picture.

// Whether pictures that the codec marks as not referred to can be left out without any effect on others.
bool canSkip(const AVCodecParameters& codec)
{
    switch (codec.codec_id) {
    case AV_CODEC_ID_H264:
    case AV_CODEC_ID_MPEG1VIDEO:
    case AV_CODEC_ID_MPEG2VIDEO:
    case AV_CODEC_ID_MPEG4:
        return true;
    case AV_CODEC_ID_HEVC:
        // The mark is about one temporal layer only; the configuration record counts them.
        return codec.extradata_size > 22 && codec.extradata[0] == 1 && (codec.extradata[21] >> 3 & 7) == 1;
    default:
        return false;
    }
}

} // namespace

Result<std::unique_ptr<StillDecoder>> StillDecoder::open(const StillSession& session, CGSize maximumSize,
                                                         int threads, Events events)
{
    auto& stream = session.source->streams()[static_cast<std::size_t>(session.stream)];
    auto& parameters = stream.format->parameters();
    auto decoder = TRY(MediaDecoder::open(*parameters.codec, parameters.timeBase, parameters.frameRate,
                                          {.threads = threads}));
    const StillShape shape{.maximumSize = maximumSize,
                           .transform = session.transform,
                           .pixelAspectRatio = stream.format->video()->pixelAspectRatio};
    std::unique_ptr<StillDecoder> made(new StillDecoder(std::move(decoder), shape, std::move(events)));
    made->timeBase_ = parameters.timeBase;
    made->skipsUnwanted_ = canSkip(*parameters.codec);
    return made;
}

StillDecoder::StillDecoder(std::unique_ptr<MediaDecoder> decoder, const StillShape& shape, Events events)
    : decoder_(std::move(decoder))
    , events_(std::move(events))
    , renderer_(shape)
{
}

void StillDecoder::decode(PacketGroup piece, const std::stop_token& stop)
{
    if (piece.begins) {
        decoder_->flush();
        moments_.clear();
        hasPrevious_ = false;
        isFirstOfStream_ = piece.isFirstOfStream;
        isKeyAlone_ = piece.isKeyAlone;
        keyTime_ = piece.keyTime;
    }
    moments_.insert(moments_.end(), piece.moments.begin(), piece.moments.end());
    auto decoded = decodePackets(piece, stop);
    if (!decoded && !piece.error)
        piece.error = decoded.error();
    if (piece.ends && !stop.stop_requested())
        endGroup(piece.error);
}

Result<void> StillDecoder::decodePackets(const PacketGroup& piece, const std::stop_token& stop)
{
    for (std::size_t place = 0; place < piece.packets.size() && !stop.stop_requested(); ++place) {
        if (piece.ends && moments_.empty())
            return {};
        const bool skips = skipsUnwanted_ && !piece.isWanted[place];
        decoder_->context().skip_frame = skips ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
        TRY(decoder_->send(piece.packets[place].get()));
        TRY(receive());
    }
    if (!piece.ends || moments_.empty())
        return {};
    TRY(decoder_->send(nullptr));
    return receive();
}

Result<void> StillDecoder::receive()
{
    while (TRY(decoder_->receive(*current_))) {
        if (current_->width > 0 && current_->height > 0) {
            choose();
            std::swap(previous_, current_);
            hasPrevious_ = true;
        }
        av_frame_unref(current_.get());
    }
    return {};
}

// Frames come in the order they are shown: what is on screen at a time is known once a later one is there.
void StillDecoder::choose()
{
    const auto pts = current_->pts;
    // A later one may accept what an earlier one does not: its tolerance reaches further back.
    for (auto moment = moments_.begin(); moment != moments_.end();) {
        const bool accepts = moment->accepts(pts);
        if (!accepts && (pts <= moment->time || moment->isCutOff)) {
            ++moment;
            continue;
        }
        const auto done = *moment;
        moment = moments_.erase(moment);
        if (hasPrevious_ && pts > done.time && !done.isCutOff)
            give(done, *previous_);
        else if (accepts || isFirstOfStream_)
            give(done, *current_);
        else
            giveUp(done, std::nullopt);
    }
}

void StillDecoder::endGroup(const std::optional<Error>& error)
{
    for (auto& moment : std::exchange(moments_, {})) {
        if (hasPrevious_ && !error && !isKeyAlone_)
            give(moment, *previous_);
        else
            giveUp(moment, error);
    }
}

void StillDecoder::give(const StillMoment& moment, const AVFrame& frame)
{
    if (imageTime_ != frame.pts || image_.isEmpty()) {
        auto image = renderer_.render(frame);
        if (!image)
            return events_.onPicture(moment, failure(image.error()));
        image_ = *std::move(image);
        imageTime_ = frame.pts;
    }
    const auto time = mediaTime(frame.pts, timeBase_) + moment.shift;
    events_.onPicture(moment, StillPicture{image_, CMTimeMaximum(time, moment.start)});
}

void StillDecoder::giveUp(const StillMoment& moment, const std::optional<Error>& error)
{
    if (error)
        return events_.onPicture(moment, failure(*error));
    auto again = moment;
    again.mayUseKeyAlone = false;
    if (!isKeyAlone_)
        again.seekTime = std::min(keyTime_, moment.seekTime) - 1;
    if (++again.attempts <= greatestAttemptCount && (isKeyAlone_ || !isFirstOfStream_))
        return events_.onRetry(again);
    if (decoder_->lastDamage() < 0)
        return events_.onPicture(moment, failure(mediaError(decoder_->lastDamage(), MediaWork::decode)));
    events_.onPicture(moment, failure(AVError::noImageAtTime));
}

} // namespace platform
