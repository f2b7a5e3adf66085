// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIBezierPath.h"

namespace platform {

// A view that shows nothing but a filled outline. As a mask it need not be painted where the outline is whole.
class OutlineMask {
public:
    virtual ~OutlineMask() = default;
    virtual UIBezierPath outlineNow() const = 0; // in the view's coordinates
};

} // namespace platform
