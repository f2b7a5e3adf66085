// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <cmath>

namespace zelk {

// Whether the two are at most `tolerance` apart. Never true of not-a-number, nor of two infinities.
inline bool almostEquals(platform::CGFloat value, platform::CGFloat other, platform::CGFloat tolerance)
{
    return std::abs(value - other) <= tolerance;
}

} // namespace zelk
