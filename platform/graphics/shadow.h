// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIRectCorner.h"

#include <functional>

namespace platform {

class CGContext;

// Soft shadows: an outline, blurred, in one colour. `deviation` is the blur's, in points; nothing is painted further than
// shadowReach(deviation) away from the outline. Wide blurs are computed coarsely, so the cost has a bound whatever the deviation.
// Main thread only.

constexpr CGFloat shadowReach(CGFloat deviation)
{
    return 3 * deviation;
}

// Of a rectangle with round corners. Only the edge is painted where `hidden`, which something opaque will cover, allows it.
// The blurred pictures are kept, so moving or resizing one costs no blur.
struct RectShadow {
    CGRect rect;
    CGFloat cornerRadius = 0;
    UIRectCorner corners = UIRectCorner::allCorners;
    CGFloat deviation = 3;
    UIColor color;
    CGRect hidden = {};
};
void drawShadow(CGContext& context, const RectShadow& shadow);

// Of whatever `draw` paints inside of `bounds`, in the context's coordinates.
struct OutlineShadow {
    CGRect bounds;
    CGFloat deviation = 3;
    UIColor color;
};
void drawShadow(CGContext& context, const OutlineShadow& shadow, const std::function<void(CGContext&)>& draw);

} // namespace platform
