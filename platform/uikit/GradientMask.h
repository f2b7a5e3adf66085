// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/MaskedPicture.h"
#include "platform/graphics/gradientMask.h"

namespace platform {

class UIView;

// A view that shows nothing but a gradient over all of its bounds. As a mask it is painted without a picture of its own.
class GradientMask {
public:
    virtual ~GradientMask() = default;
    // As it is on screen now, in the view's coordinates.
    virtual LinearGradientLine gradientNow() = 0;
    MaskedPicture& maskedPicture() { return maskedPicture_; }

private:
    MaskedPicture maskedPicture_; // of what this masks
};

// The gradient that is all that a mask shows. Null view: there is more to it, or something else.
struct FoundGradient {
    GradientMask* gradient = nullptr;
    UIView* view = nullptr;
};
FoundGradient gradientOf(UIView& mask);
// Whatever the mask belongs to looks different.
void maskedContentDidChange(UIView& mask);

} // namespace platform
