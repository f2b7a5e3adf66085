// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/gradientMask.h"

namespace platform {

// A view that shows nothing but a gradient over all of its bounds. As a mask it is painted without a picture of its own.
class GradientMask {
public:
    virtual ~GradientMask() = default;
    // As it is on screen now, in the view's coordinates.
    virtual LinearGradientLine gradientNow() = 0;
};

} // namespace platform
