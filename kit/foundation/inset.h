// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// What the insets leave of the size; may be negative.
inline platform::CGSize inset(platform::CGSize size, const platform::UIEdgeInsets& by)
{
    return {size.width - (by.left + by.right), size.height - (by.top + by.bottom)};
}

// What is left when `dx` goes at the left and at the right, `dy` at the top and at the bottom: zero by zero when there
// is less than that of either.
inline platform::CGSize insetBy(platform::CGSize size, platform::CGFloat dx, platform::CGFloat dy)
{
    return platform::CGRect{{}, size}.insetBy(dx, dy).size;
}

} // namespace zelk
