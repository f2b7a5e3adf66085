// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/AVMetadataItem.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/avfoundation/Forward.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

// Timed media: tracks on one timeline that starts at zero. Queries may read the file at their first call and then
// block; they may come from any thread unless the asset is being changed.
class AVAsset : public NSObject {
public:
    // To the end of the last track. Invalid when the media could not be read, zero when there are no tracks.
    virtual CMTime duration() const = 0;
    // In the file's order. Empty when the media could not be read. Pictures that a file carries as a cover are no
    // tracks.
    virtual std::vector<std::shared_ptr<AVAssetTrack>> tracks() const = 0;
    std::vector<std::shared_ptr<AVAssetTrack>> tracksWithMediaType(AVMediaType type) const;
    // Null when there is none.
    std::shared_ptr<AVAssetTrack> trackWithTrackID(CMPersistentTrackID id) const;
    virtual std::vector<AVMetadataItem> metadata() const = 0;
    // Why the media could not be read. Nothing when it could.
    virtual std::optional<Error> loadError() const { return std::nullopt; }

    // The first video track's, the identity without one.
    CGAffineTransform preferredTransform() const;
    // Whether some track is encrypted.
    bool hasProtectedContent() const;
    // Whether a reader can take samples out.
    bool isReadable() const;
    // Whether some track has media and each can be decoded.
    virtual bool isExportable() const;
};

} // namespace platform
