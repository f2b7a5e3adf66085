// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"

#include <vector>

namespace platform {

class AVAsset;
class AVAssetTrack;

// How one track's pictures are laid onto the picture that a composition makes. Times are the asset's.
//
// A value set at a time holds from there on, a ramp changes it evenly over its range and its end holds afterwards; what
// is set first holds before, too. Of two that begin at the same time the later set counts. A value. One thread at a time.
class AVVideoCompositionLayerInstruction {
public:
    explicit AVVideoCompositionLayerInstruction(const AVAssetTrack& track);

    CMPersistentTrackID trackID() const { return trackID_; }

    // From the track's natural size, not turned as the track asks, to the render size: pixels, top left, y downwards.
    // The identity until something is set.
    void setTransform(const CGAffineTransform& transform, const CMTime& time);
    void setTransformRamp(const CGAffineTransform& start, const CGAffineTransform& end,
                          const CMTimeRange& range);
    CGAffineTransform transform(const CMTime& time) const;

    // 0...1; 1 until something is set.
    void setOpacity(double opacity, const CMTime& time);
    void setOpacityRamp(double start, double end, const CMTimeRange& range);
    double opacity(const CMTime& time) const;

private:
    template <class Value>
    struct Ramp {
        Value start;
        Value end;
        CMTimeRange range;
    };
    template <class Value>
    static const Ramp<Value>* rampAt(const std::vector<Ramp<Value>>& ramps, const CMTime& time);
    template <class Value>
    static void add(std::vector<Ramp<Value>>& ramps, Ramp<Value> ramp);

    CMPersistentTrackID trackID_;
    // by start
    std::vector<Ramp<CGAffineTransform>> transforms_;
    std::vector<Ramp<double>> opacities_;
};

// What is seen during a time: layers, the first one on top, over a colour.
struct AVVideoCompositionInstruction {
    CMTimeRange timeRange;
    std::vector<AVVideoCompositionLayerInstruction> layerInstructions;
    UIColor backgroundColor = UIColor(0, 0, 0);
};

// How the video tracks of an asset become one picture. A value. One thread at a time.
struct AVVideoComposition {
    // Pixels.
    CGSize renderSize;
    // Pictures are made for its multiples; positive.
    CMTime frameDuration;
    // The first one whose range contains a time counts then; a time without any has no picture.
    std::vector<AVVideoCompositionInstruction> instructions;

    // As the asset is shown without a composition: its first video track, turned as it asks, in as many pictures as it
    // has; 30 a second when that is not known. Reads the file at its first call. Without a video track the render size
    // is zero, which nothing accepts.
    static AVVideoComposition propertiesOf(const AVAsset& asset);
};

} // namespace platform
