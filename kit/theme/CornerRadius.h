// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// Radii of rounded corners, in points. A token names its step in hundredths of 8 points.
struct CornerRadius {
    CornerRadius() = delete; // a family of constants

    static constexpr platform::CGFloat _50 = 4;
    static constexpr platform::CGFloat _100 = 8;
    static constexpr platform::CGFloat _150 = 12;
    static constexpr platform::CGFloat _200 = 16;
    static constexpr platform::CGFloat _250 = 20;
    static constexpr platform::CGFloat _300 = 24;
    static constexpr platform::CGFloat _350 = 28;
};

} // namespace zelk
