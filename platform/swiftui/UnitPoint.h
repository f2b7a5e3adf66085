// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace platform {

// A point of a rectangle as parts of its width and height; values outside of 0...1 lie outside. Leading is the left
// side in every direction of reading.
struct UnitPoint {
    CGFloat x = 0;
    CGFloat y = 0;

    static constexpr UnitPoint topLeading() { return {0, 0}; }
    static constexpr UnitPoint top() { return {0.5, 0}; }
    static constexpr UnitPoint topTrailing() { return {1, 0}; }
    static constexpr UnitPoint leading() { return {0, 0.5}; }
    static constexpr UnitPoint center() { return {0.5, 0.5}; }
    static constexpr UnitPoint trailing() { return {1, 0.5}; }
    static constexpr UnitPoint bottomLeading() { return {0, 1}; }
    static constexpr UnitPoint bottom() { return {0.5, 1}; }
    static constexpr UnitPoint bottomTrailing() { return {1, 1}; }

    CGPoint in(CGRect rect) const
    {
        return {rect.minX() + x * rect.width(), rect.minY() + y * rect.height()};
    }
    bool operator==(const UnitPoint&) const = default;
};

} // namespace platform
