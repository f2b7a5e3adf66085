// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// Space between elements, in points. A token names its step in hundredths of 8 points.
struct Spacing {
    Spacing() = delete; // a family of constants

    static constexpr platform::CGFloat _25 = 2;
    static constexpr platform::CGFloat _50 = 4;
    static constexpr platform::CGFloat _75 = 6;
    static constexpr platform::CGFloat _100 = 8;
    static constexpr platform::CGFloat _150 = 12;
    static constexpr platform::CGFloat _200 = 16;
    static constexpr platform::CGFloat _250 = 20;
    static constexpr platform::CGFloat _300 = 24;
    static constexpr platform::CGFloat _325 = 26;
    static constexpr platform::CGFloat _400 = 32;
    static constexpr platform::CGFloat _600 = 48;
    static constexpr platform::CGFloat _800 = 76; // not 64: layouts have been built on it
};

} // namespace zelk
