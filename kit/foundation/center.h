// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

inline platform::CGPoint center(const platform::CGRect& rect)
{
    return {rect.midX(), rect.midY()};
}

// The rectangle of that size around `center`.
inline platform::CGRect rect(platform::CGPoint center, platform::CGSize size)
{
    return {{center.x - size.width / 2, center.y - size.height / 2}, size};
}

} // namespace zelk
