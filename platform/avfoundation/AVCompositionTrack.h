// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/foundation/URL.h"

#include <optional>

namespace platform {

// A stretch of a composition track: a range of a file's track and the range, as long, where it plays. An empty one
// (an empty edit) plays nothing.
struct AVCompositionTrackSegment {
    // Absent in an empty segment.
    std::optional<URL> sourceURL;
    CMPersistentTrackID sourceTrackID = kCMPersistentTrackID_Invalid;
    // Of an empty segment its start is invalid.
    CMTimeRange sourceTimeRange;
    CMTimeRange targetTimeRange;
    bool isEmpty() const { return !sourceURL; }
};

// A track of a composition: segments one after the other from zero to the end of the last that has media.
class AVCompositionTrack : public AVAssetTrack {
public:
    ~AVCompositionTrack() override;

    std::vector<AVCompositionTrackSegment> segments() const;

    // From the first segment that has media. Empty at zero when there is none.
    CMTimeRange timeRange() const override;
    std::vector<std::shared_ptr<const CMFormatDescription>> formatDescriptions() const override;
    // The natural size, frame rate, time scale, data rate and language of the first segment that has media.
    CGSize naturalSize() const override;
    CGAffineTransform preferredTransform() const override { return preferredTransform_; }
    double nominalFrameRate() const override;
    std::int32_t naturalTimeScale() const override;
    double estimatedDataRate() const override;
    std::string languageCode() const override;
    bool hasProtectedContent() const override;
    // False when there are no media.
    bool isDecodable() const override;

    std::vector<MediaSegment> mediaSegments() const override;

protected:
    AVCompositionTrack(std::weak_ptr<AVAsset> asset, CMPersistentTrackID trackID, AVMediaType mediaType);

    // in order, without gaps, the last is never empty
    std::vector<MediaSegment> segments_;
    CGAffineTransform preferredTransform_;
};

} // namespace platform
