// SPDX-License-Identifier: MIT
#include "kit/media/ExportSetup_p.h"

#include "kit/foundation/applicationIdentifierPrefix.h"
#include "kit/media/AVAssetError.h"

#include "platform/avfoundation/AVAssetTrack.h"

namespace zelk {

using namespace platform;

const std::shared_ptr<DispatchQueue>& exportQueue()
{
    // Never destroyed: exports may be under way when the process ends.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(
        DispatchQueue::make(applicationIdentifierPrefix() + ".avasset.export-queue"));
    return queue;
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
