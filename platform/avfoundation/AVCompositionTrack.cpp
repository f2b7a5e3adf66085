// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCompositionTrack.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/MediaSegment_p.h"

#include <algorithm>

namespace platform {

namespace {

const MediaStream* firstStream(const std::vector<MediaSegment>& segments)
{
    auto found = std::ranges::find_if(segments, [](auto& segment) { return !segment.isEmpty(); });
    return found == segments.end() ? nullptr : &found->mediaStream();
}

} // namespace

AVCompositionTrack::AVCompositionTrack(std::weak_ptr<AVAsset> asset, CMPersistentTrackID trackID,
                                       AVMediaType mediaType)
    : AVAssetTrack(std::move(asset), trackID, mediaType)
{
}

AVCompositionTrack::~AVCompositionTrack() = default;

std::vector<AVCompositionTrackSegment> AVCompositionTrack::segments() const
{
    std::vector<AVCompositionTrackSegment> result;
    for (auto& segment : segments_) {
        AVCompositionTrackSegment described{.targetTimeRange = segment.target};
        described.sourceTimeRange = {segment.sourceStart, segment.target.duration};
        if (!segment.isEmpty()) {
            described.sourceURL = URL::fileURL(segment.source->path());
            described.sourceTrackID = segment.mediaStream().trackID;
        }
        result.push_back(std::move(described));
    }
    return result;
}

CMTimeRange AVCompositionTrack::timeRange() const
{
    auto first = std::ranges::find_if(segments_, [](auto& segment) { return !segment.isEmpty(); });
    if (first == segments_.end())
        return CMTimeRange::zero();
    return CMTimeRange::fromTimeToTime(first->target.start, segments_.back().target.end());
}

std::vector<std::shared_ptr<const CMFormatDescription>> AVCompositionTrack::formatDescriptions() const
{
    std::vector<std::shared_ptr<const CMFormatDescription>> result;
    for (auto& segment : segments_)
        if (!segment.isEmpty() && std::ranges::find(result, segment.mediaStream().format) == result.end())
            result.push_back(segment.mediaStream().format);
    return result;
}

CGSize AVCompositionTrack::naturalSize() const
{
    auto* stream = firstStream(segments_);
    return stream ? stream->naturalSize : CGSize{};
}

double AVCompositionTrack::nominalFrameRate() const
{
    auto* stream = firstStream(segments_);
    return stream ? stream->frameRate : 0;
}

std::int32_t AVCompositionTrack::naturalTimeScale() const
{
    auto* stream = firstStream(segments_);
    return stream ? stream->format->parameters().timeBase.den : 600;
}

double AVCompositionTrack::estimatedDataRate() const
{
    auto* stream = firstStream(segments_);
    return stream ? stream->dataRate : 0;
}

std::string AVCompositionTrack::languageCode() const
{
    auto* stream = firstStream(segments_);
    return stream ? stream->languageCode : "und";
}

bool AVCompositionTrack::hasProtectedContent() const
{
    return std::ranges::any_of(
        segments_, [](auto& segment) { return !segment.isEmpty() && segment.mediaStream().isProtected; });
}

bool AVCompositionTrack::isDecodable() const
{
    return firstStream(segments_) && std::ranges::all_of(segments_, [](auto& segment) {
               return segment.isEmpty() || segment.mediaStream().isDecodable;
           });
}

std::vector<MediaSegment> AVCompositionTrack::mediaSegments() const
{
    return segments_;
}

} // namespace platform
