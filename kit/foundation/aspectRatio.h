// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace zelk {

// Width by height. An infinity or not-a-number when the height is zero.
inline platform::CGFloat aspectRatio(platform::CGSize size)
{
    return size.width / size.height;
}

} // namespace zelk
