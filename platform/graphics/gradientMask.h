// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"

#include <vector>

namespace platform {

// Colours along a line, from `start` to `end`.
struct LinearGradientLine {
    std::vector<GradientStop> stops;
    CGPoint start, end;
};

// The part of `bounds`, rounded outwards, in which the two may look different.
CGRect changedArea(const LinearGradientLine& before, const LinearGradientLine& after, CGRect bounds);

// What CGContext::maskLayer does for a mask that is a gradient over all of the layer, without a picture of the mask: many
// times as fast. Between beginLayer and endLayer, in present coordinates. Without stops nothing is left of the layer.
void maskLayer(CGContext& context, const LinearGradientLine& gradient);

} // namespace platform
