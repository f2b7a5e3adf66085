// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVComposition.h"

#include "platform/avfoundation/MediaSegment_p.h"

#include <algorithm>

namespace platform {

CMTime AVComposition::duration() const
{
    auto end = CMTime::zero();
    for (auto& track : compositionTracks_)
        end = CMTimeMaximum(end, track->timeRange().end());
    return end;
}

std::vector<std::shared_ptr<AVAssetTrack>> AVComposition::tracks() const
{
    return {compositionTracks_.begin(), compositionTracks_.end()};
}

std::vector<AVMetadataItem> AVComposition::metadata() const
{
    for (auto& track : compositionTracks_)
        for (auto& segment : track->mediaSegments())
            if (!segment.isEmpty() && !segment.source->metadata().empty())
                return segment.source->metadata();
    return {};
}

std::shared_ptr<AVMutableCompositionTrack>
AVMutableComposition::addMutableTrack(AVMediaType mediaType, CMPersistentTrackID preferredTrackID)
{
    auto isTaken = [this](CMPersistentTrackID id) {
        return std::ranges::any_of(compositionTracks_, [id](auto& track) { return track->trackID() == id; });
    };
    if (preferredTrackID < 0 || isTaken(preferredTrackID))
        return nullptr;
    auto id = preferredTrackID;
    if (id == kCMPersistentTrackID_Invalid)
        for (id = 1; isTaken(id);)
            ++id;
    return compositionTracks_.emplace_back(std::make_shared<AVMutableCompositionTrack>(
        AVMutableCompositionTrack::Key{}, sharedFrom<AVAsset>(this), id, mediaType));
}

void AVMutableComposition::removeTrack(const AVCompositionTrack& track)
{
    std::erase_if(compositionTracks_, [&track](auto& candidate) { return candidate.get() == &track; });
}

} // namespace platform
