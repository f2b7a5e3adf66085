// SPDX-License-Identifier: MIT
#include "platform/avfoundation/PictureEncoder_p.h"
#include "platform/avfoundation/TrackWriting_p.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

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

    const TrackPlace place_;
    const VideoSettings settings_;
    const PictureEncoder::Take write_ = [this](AVPacket& packet) {
        return place_.muxer.write(place_.track, packet);
    };
    std::unique_ptr<PictureEncoder> encoder_;
    AVRational timeBase_{1, 90000};
    std::int64_t lastPts_ = AV_NOPTS_VALUE;
};

Result<void> VideoTrackWriting::open(const CMSampleBuffer& sample)
{
    auto scale = place_.mediaTimeScale > 0 ? place_.mediaTimeScale : sample.presentationTimeStamp.timescale;
    timeBase_ = {1, std::max(scale, 1)};
    encoder_ = TRY(PictureEncoder::open(settings_, *sample.imageBuffer, {.timeBase = timeBase_}));
    CodecParameters parameters(avcodec_parameters_alloc());
    if (!parameters || avcodec_parameters_from_context(parameters.get(), &encoder_->context()) < 0)
        return failure(AVError::outOfMemory);
    auto description = place_.description(std::move(parameters), timeBase_);
    description.averageFrameRate = encoder_->context().framerate;
    return place_.muxer.describe(place_.track, std::move(description));
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
    auto pts = ticks(begin, timeBase_);
    if (pts == AV_NOPTS_VALUE || (lastPts_ != AV_NOPTS_VALUE && pts < lastPts_))
        return failure(AVError::invalidSourceMedia);
    // Of two pictures in one tick nobody would see the first for any time; the file cannot hold both.
    if (pts == lastPts_)
        return {};
    lastPts_ = pts;
    auto duration = end.isNumeric() ? std::max<std::int64_t>(ticks(end, timeBase_) - pts, 1) : 0;
    return encoder_->encode(*sample.imageBuffer, pts, duration, write_);
}

Result<void> VideoTrackWriting::finish()
{
    return encoder_ ? encoder_->finish(write_) : place_.muxer.drop(place_.track);
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
