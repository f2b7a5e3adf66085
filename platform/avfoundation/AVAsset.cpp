// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAsset.h"

#include "platform/avfoundation/AVAssetTrack.h"

#include <algorithm>

namespace platform {

std::vector<std::shared_ptr<AVAssetTrack>> AVAsset::tracksWithMediaType(AVMediaType type) const
{
    auto result = tracks();
    std::erase_if(result, [type](auto& track) { return track->mediaType() != type; });
    return result;
}

std::shared_ptr<AVAssetTrack> AVAsset::trackWithTrackID(CMPersistentTrackID id) const
{
    auto all = tracks();
    auto found = std::ranges::find(all, id, &AVAssetTrack::trackID);
    return found == all.end() ? nullptr : *found;
}

CGAffineTransform AVAsset::preferredTransform() const
{
    auto video = tracksWithMediaType(AVMediaType::video);
    return video.empty() ? CGAffineTransform{} : video.front()->preferredTransform();
}

bool AVAsset::hasProtectedContent() const
{
    return std::ranges::any_of(tracks(), &AVAssetTrack::hasProtectedContent);
}

bool AVAsset::isReadable() const
{
    return std::ranges::any_of(tracks(), [](auto& track) { return !track->hasProtectedContent(); });
}

bool AVAsset::isExportable() const
{
    bool hasMedia = false;
    for (auto& track : tracks()) {
        const bool isSeenOrHeard =
            track->mediaType() == AVMediaType::video || track->mediaType() == AVMediaType::audio;
        if (!isSeenOrHeard || track->timeRange().isEmpty())
            continue;
        if (!track->isDecodable())
            return false;
        hasMedia = true;
    }
    return hasMedia;
}

} // namespace platform
