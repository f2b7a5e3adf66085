// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// Sizes of elements on a grid, in points. A token names its step in hundredths of 16 points.
struct GridSize {
    GridSize() = delete; // a family of constants

    static constexpr platform::CGFloat _50 = 8;
    static constexpr platform::CGFloat _100 = 16;
    static constexpr platform::CGFloat _150 = 24;
    static constexpr platform::CGFloat _200 = 32;
    static constexpr platform::CGFloat _250 = 40;
    static constexpr platform::CGFloat _275 = 44;
    static constexpr platform::CGFloat _300 = 48;
    static constexpr platform::CGFloat _350 = 56;
    static constexpr platform::CGFloat _400 = 64;
    static constexpr platform::CGFloat _450 = 72;
    static constexpr platform::CGFloat _500 = 80;
    static constexpr platform::CGFloat _550 = 88;
    static constexpr platform::CGFloat _600 = 96;
    static constexpr platform::CGFloat _650 = 104;
    static constexpr platform::CGFloat _750 = 120;
    static constexpr platform::CGFloat _1000 = 160;
    static constexpr platform::CGFloat _1100 = 176;
    static constexpr platform::CGFloat _2000 = 320;
    static constexpr platform::CGFloat _2200 = _1100 + _1100;
};

} // namespace zelk
