// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVMutableCompositionTrack.h"

namespace platform {

// An asset put together from pieces of others. It copies no media: its tracks name files and ranges.
class AVComposition : public AVAsset {
public:
    CMTime duration() const override;
    std::vector<std::shared_ptr<AVAssetTrack>> tracks() const override;
    // Of the first asset that a track was filled from and that has any.
    std::vector<AVMetadataItem> metadata() const override;

protected:
    std::vector<std::shared_ptr<AVMutableCompositionTrack>> compositionTracks_;
};

// A composition that can be changed. One thread at a time; not while something reads it. A reader or an export
// session takes what the tracks hold when it starts.
class AVMutableComposition : public AVComposition {
public:
    // A new empty track at the end of the list. `preferredTrackID` is the track's identifier, or
    // kCMPersistentTrackID_Invalid to have one picked. Null when it is negative or taken.
    std::shared_ptr<AVMutableCompositionTrack> addMutableTrack(AVMediaType mediaType,
                                                               CMPersistentTrackID preferredTrackID);
    // Nothing happens when the track is not one of this composition.
    void removeTrack(const AVCompositionTrack& track);
};

} // namespace platform
