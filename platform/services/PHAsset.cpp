// SPDX-License-Identifier: MIT
#include "platform/services/PHAsset.h"

#include "platform/services/MediaListing.h"
#include "platform/services/PHPhotoLibrary.h"
#include "platform/services/PHPhotosCreator_p.h"

#include <chrono>

namespace platform {

namespace {

Date dateOf(const LibraryFile& file)
{
    using std::chrono::file_clock;
    auto moment = file_clock::time_point(std::chrono::nanoseconds(file.modified));
    return {std::chrono::duration<double>(file_clock::to_sys(moment).time_since_epoch()).count()};
}

} // namespace

std::vector<PHAsset> PHAsset::fetchAssets(std::optional<PHAssetMediaType> type)
{
    auto status = PHPhotoLibrary::authorizationStatus(PHAccessLevel::readWrite);
    auto isLimited = status == PHAuthorizationStatus::limited;
    if (status != PHAuthorizationStatus::authorized && !isLimited)
        return {};
    MediaKinds kinds{.photos = type != PHAssetMediaType::video, .videos = type != PHAssetMediaType::image};
    std::vector<PHAsset> assets;
    for (const auto& file : listMedia(mediaFolders(), kinds)) {
        if (isLimited && !wasAddedByThisProgram(file.path))
            continue;
        auto kind = file.isVideo ? PHAssetMediaType::video : PHAssetMediaType::image;
        assets.push_back({URL::fileURL(file.path), kind, dateOf(file)});
    }
    return assets;
}

} // namespace platform
