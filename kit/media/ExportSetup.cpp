// SPDX-License-Identifier: MIT
#include "kit/media/ExportSetup_p.h"

#include "kit/foundation/applicationIdentifierPrefix.h"
#include "kit/media/AVAssetError.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/foundation/UUID.h"

#include <filesystem>
#include <string>

namespace zelk {

using namespace platform;

const std::shared_ptr<DispatchQueue>& exportQueue()
{
    // Never destroyed: exports may be under way when the process ends.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(
        DispatchQueue::make(applicationIdentifierPrefix() + ".avasset.export-queue"));
    return queue;
}

URL temporaryExportURL(std::string_view pathExtension)
{
    std::error_code error; // a folder that is none shows when the file is to be made
    std::string folder = std::filesystem::temp_directory_path(error);
    if (folder.empty())
        folder = "/tmp";
    return URL::fileURL(folder).appendingPathComponent(UUID().string() + "." + std::string(pathExtension));
}

Result<void> addTracks(AVMutableComposition& composition, const AVAsset& asset, AVMediaType type)
{
    for (auto& source : asset.tracksWithMediaType(type)) {
        auto track = composition.addMutableTrack(type, kCMPersistentTrackID_Invalid);
        if (!track)
            return failure(AVAssetError::couldNotAddMutableAudioTrack);
        auto range = source->timeRange();
        TRY(track->insertTimeRange(range, *source, range.start));
        if (type == AVMediaType::video)
            track->setPreferredTransform(source->preferredTransform());
    }
    return {};
}

} // namespace zelk
