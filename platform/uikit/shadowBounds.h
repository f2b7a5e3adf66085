// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/shadow.h"
#include "platform/uikit/UIViewShadow.h"

#include <algorithm>
#include <cmath>

namespace platform {

inline CGFloat usableRadius(const UIViewShadow& shadow)
{
    constexpr CGFloat largest = 100;
    return shadow.radius > 0 ? std::min(shadow.radius, largest) : 0;
}

// What is painted of something in `rect` together with its shadow.
inline CGRect withShadow(CGRect rect, const UIViewShadow& shadow)
{
    if (rect.isEmpty() || !std::isfinite(shadow.offset.width) || !std::isfinite(shadow.offset.height))
        return rect;
    auto reach = shadowReach(usableRadius(shadow));
    return rect.unionWith(rect.offsetBy(shadow.offset.width, shadow.offset.height).insetBy(-reach, -reach));
}

} // namespace platform
