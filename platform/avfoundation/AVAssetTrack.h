// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/avfoundation/Forward.h"
#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace platform {

struct MediaSegment;

// One stream of an asset: its pictures, or its sound. Any thread, unless its composition is being changed.
class AVAssetTrack : public NSObject {
public:
    CMPersistentTrackID trackID() const { return trackID_; }
    AVMediaType mediaType() const { return mediaType_; }
    // Null once the asset is gone. The track stays readable.
    std::shared_ptr<AVAsset> asset() const { return asset_.lock(); }

    // Where the track's media lies on the asset's timeline. Starts later than zero when the track does.
    virtual CMTimeRange timeRange() const = 0;
    // More than one when the samples change on the way.
    virtual std::vector<std::shared_ptr<const CMFormatDescription>> formatDescriptions() const = 0;
    // Of video: pixels, made square by widening or narrowing, before preferredTransform. Zero otherwise.
    virtual CGSize naturalSize() const = 0;
    // How pictures are turned or mirrored to be upright; maps the natural size to positive coordinates.
    virtual CGAffineTransform preferredTransform() const = 0;
    // Pictures a second on average; 0 when that is not known or the track is not video.
    virtual double nominalFrameRate() const = 0;
    // Ticks a second of the track's own times.
    virtual std::int32_t naturalTimeScale() const = 0;
    // Bits a second; 0 when not known.
    virtual double estimatedDataRate() const = 0;
    // ISO 639-2, "und" when the file does not say.
    virtual std::string languageCode() const = 0;
    // Whether the samples are encrypted: they can be neither decoded nor exported.
    virtual bool hasProtectedContent() const = 0;
    // Whether there is a decoder for the samples and they are not encrypted.
    virtual bool isDecodable() const = 0;

    // The pieces of files that the track plays, in order, without gaps; for readers of this folder.
    virtual std::vector<MediaSegment> mediaSegments() const = 0;

protected:
    AVAssetTrack(std::weak_ptr<AVAsset> asset, CMPersistentTrackID trackID, AVMediaType mediaType)
        : asset_(std::move(asset))
        , trackID_(trackID)
        , mediaType_(mediaType)
    {
    }

private:
    const std::weak_ptr<AVAsset> asset_;
    const CMPersistentTrackID trackID_;
    const AVMediaType mediaType_;
};

} // namespace platform
