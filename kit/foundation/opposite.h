// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// Outwards what was inwards.
constexpr platform::UIEdgeInsets opposite(const platform::UIEdgeInsets& insets)
{
    return {-insets.top, -insets.left, -insets.bottom, -insets.right};
}

} // namespace zelk
