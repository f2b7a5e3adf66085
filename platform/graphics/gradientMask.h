// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"

#include <vector>

namespace platform {

// Colours along a line, from `start` to `end`.
struct LinearGradientLine {
    std::vector<GradientStop> stops;
    CGPoint start, end;
    bool operator==(const LinearGradientLine&) const = default;
};

// The part of `bounds`, rounded outwards, in which the two may look different.
CGRect changedArea(const LinearGradientLine& before, const LinearGradientLine& after, CGRect bounds);

// A gradient as a mask: its alpha counts.
struct MaskGradient {
    LinearGradientLine line;     // without stops nothing is left of what is masked
    CGAffineTransform toContext; // from the line's coordinates to the context's present ones
    ColorAppearance appearance;
};

// What CGContext::maskLayer does for a mask that is a gradient over all of the layer, without a picture of the mask: many
// times as fast. Between beginLayer and endLayer.
void maskLayer(CGContext& context, const MaskGradient& mask);

} // namespace platform
