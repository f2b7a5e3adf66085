// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIColor.h"

namespace platform {

// The components of any colour, for those who compute with them: in sRGB, in the current appearance; a pattern gives the
// mean of its pixels.
class CIColor {
public:
    explicit CIColor(const UIColor& color)
        : components_(color.components(currentAppearance()))
    {
    }

    double red() const { return components_.red; }
    double green() const { return components_.green; }
    double blue() const { return components_.blue; }
    double alpha() const { return components_.alpha; }

private:
    ColorComponents components_;
};

} // namespace platform
