// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCompositionTrack.h"
#include "platform/foundation/Result.h"

namespace platform {

class AVMutableComposition;

// A composition track that can be changed; made by AVMutableComposition::addMutableTrack. One thread at a time.
class AVMutableCompositionTrack : public AVCompositionTrack {
public:
    // Puts a range of `track` at `at`: what plays there and later moves back by the range's duration. After the end
    // of the track the gap is filled by an empty segment; an invalid `at` means the end.
    //
    // The range is cut to the part from zero to the end of the track. Where the track has no media yet (it starts
    // later, or is a composition's with gaps) the piece is empty, so that media keep their place within the range.
    //
    // Errors, of AVFoundationErrorDomain, leave the track as it was: invalidCompositionTrackSegmentSourceStartTime
    // when the range is invalid or begins at or after the end of the track, invalidCompositionTrackSegmentSourceDuration
    // when it is empty or ends at or before zero, invalidCompositionTrackSegmentDuration when `at` is negative or not a
    // number, operationNotSupportedForAsset when the track is of another media type.
    [[nodiscard]] Result<void> insertTimeRange(const CMTimeRange& range, const AVAssetTrack& track,
                                               const CMTime& at);
    // Opens a gap. What would be an empty end is dropped, as there is nothing for it to part.
    void insertEmptyTimeRange(const CMTimeRange& range);
    // Takes a range out and moves what follows forward.
    void removeTimeRange(const CMTimeRange& range);

    void setPreferredTransform(const CGAffineTransform& transform) { preferredTransform_ = transform; }

private:
    friend class AVMutableComposition;
    struct Key { }; // only the composition makes tracks

public:
    AVMutableCompositionTrack(Key, std::weak_ptr<AVAsset> asset, CMPersistentTrackID trackID,
                              AVMediaType mediaType)
        : AVCompositionTrack(std::move(asset), trackID, mediaType)
    {
    }
};

} // namespace platform
