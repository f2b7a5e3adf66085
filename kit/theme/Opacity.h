// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// How much of an element is seen: 0 nothing, 1 all. A token names its value in hundredths.
struct Opacity {
    Opacity() = delete; // a family of constants

    static constexpr platform::CGFloat _0 = 0;
    static constexpr platform::CGFloat _25 = 0.25;
    static constexpr platform::CGFloat _50 = 0.5;
    static constexpr platform::CGFloat _75 = 0.75;
    static constexpr platform::CGFloat _100 = 1;
};

} // namespace zelk
