// SPDX-License-Identifier: MIT
#include "platform/avfoundation/TrackWriting_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/DecodeTimes_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace platform {

namespace {

// Samples that are compressed already, or need not be, with their own times.
class CompressedTrackWriting final : public TrackWriting {
public:
    CompressedTrackWriting(const TrackPlace& place, std::shared_ptr<const CMFormatDescription> hint)
        : place_(place)
        , format_(std::move(hint))
    {
    }

    Result<void> append(const CMSampleBuffer& sample, const CMTimeRange& session) override
    {
        if (!isDescribed_) {
            if (!format_)
                format_ = sample.formatDescription;
            TRY(describe());
            noteOrder(sample);
        }
        if (sample.presentationTimeStamp >= session.end())
            return {};
        auto packet = makePacket();
        int code = av_new_packet(packet.get(), static_cast<int>(sample.data.bytes.size()));
        if (code < 0)
            return std::unexpected(mediaError(code, MediaWork::write));
        std::memcpy(packet->data, sample.data.bytes.data(), sample.data.bytes.size());
        auto decodeTime =
            sample.decodeTimeStamp.isNumeric() ? sample.decodeTimeStamp : sample.presentationTimeStamp;
        packet->pts = ticks(sample.presentationTimeStamp - session.start, timeBase_);
        if (packet->pts == AV_NOPTS_VALUE)
            return failure(AVError::invalidSourceMedia);
        packet->dts = decodeTimes_ ? decodeTimes_->next(packet->pts).value_or(packet->pts)
                                   : ticks(decodeTime - session.start, timeBase_);
        // Two samples never share a decode time, however coarsely it was told.
        if (lastDts_ != AV_NOPTS_VALUE && packet->dts <= lastDts_)
            packet->dts = lastDts_ + 1;
        lastDts_ = packet->dts;
        packet->pts = std::max(packet->pts, packet->dts);
        auto duration = sample.duration;
        if (sample.trimDurationAtEnd.isNumeric())
            duration -= sample.trimDurationAtEnd;
        packet->duration = duration.isNumeric() ? ticks(duration, timeBase_) : 0;
        if (sample.isSync)
            packet->flags |= AV_PKT_FLAG_KEY;
        return place_.muxer.write(place_.track, *packet);
    }

    Result<void> finish() override
    {
        if (isDescribed_)
            return {};
        return format_ ? describe() : place_.muxer.drop(place_.track);
    }

private:
    Result<void> describe()
    {
        auto& parameters = format_->parameters();
        CodecParameters codec(avcodec_parameters_alloc());
        if (!codec || avcodec_parameters_copy(codec.get(), parameters.codec.get()) < 0)
            return failure(AVError::outOfMemory);
        timeBase_ = place_.mediaTimeScale > 0 ? AVRational{1, place_.mediaTimeScale} : parameters.timeBase;
        if (timeBase_.num <= 0 || timeBase_.den <= 0)
            timeBase_ = {1, codec->sample_rate > 0 ? codec->sample_rate : 90000};
        auto description = place_.description(std::move(codec), timeBase_);
        description.averageFrameRate = parameters.frameRate;
        isDescribed_ = true;
        return place_.muxer.describe(place_.track, std::move(description));
    }

    // Pictures that overtake each other and whose container does not say when they are decoded.
    void noteOrder(const CMSampleBuffer& first)
    {
        auto& parameters = format_->parameters();
        auto depth = std::min(parameters.codec->video_delay, DecodeTimes::greatestDepth);
        if (depth <= 0 || first.decodeTimeStamp.isNumeric())
            return;
        auto rate = parameters.frameRate.num > 0 ? parameters.frameRate : AVRational{25, 1};
        decodeTimes_.emplace(depth, std::max<std::int64_t>(av_rescale_q(1, av_inv_q(rate), timeBase_), 1));
    }

    const TrackPlace place_;
    std::shared_ptr<const CMFormatDescription> format_;
    std::optional<DecodeTimes> decodeTimes_; // where they are made up
    AVRational timeBase_{1, 90000};
    std::int64_t lastDts_ = AV_NOPTS_VALUE;
    bool isDescribed_ = false;
};

} // namespace

MuxerTrack TrackPlace::description(CodecParameters codec, AVRational timeBase) const
{
    return {.codec = std::move(codec),
            .timeBase = timeBase,
            .transform = transform,
            .languageCode = languageCode};
}

std::unique_ptr<TrackWriting>
makeCompressedTrackWriting(const TrackPlace& place, const std::shared_ptr<const CMFormatDescription>& hint)
{
    return std::make_unique<CompressedTrackWriting>(place, hint);
}

std::unique_ptr<TrackWriting> makeTrackWriting(const AVAssetWriterInput& input, MediaMuxer& muxer,
                                               std::size_t track, AVFileType fileType)
{
    TrackPlace place{.muxer = muxer,
                     .track = track,
                     .fileType = fileType,
                     .transform = input.transform(),
                     .languageCode = input.languageCode(),
                     .mediaTimeScale = input.mediaTimeScale()};
    if (auto* audio = std::get_if<AudioSettings>(&input.outputSettings()))
        return makeAudioTrackWriting(place, *audio);
    if (auto* video = std::get_if<VideoSettings>(&input.outputSettings()))
        return makeVideoTrackWriting(place, *video);
    return makeCompressedTrackWriting(place, input.sourceFormatHint());
}

} // namespace platform
