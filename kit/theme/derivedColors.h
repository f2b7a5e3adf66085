// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"

namespace zelk {

// All of them read a dynamic colour in the current appearance, and a pattern by the mean of its pixels.

// What is missing to white in each of red, green and blue, with the same alpha.
platform::UIColor complementary(const platform::UIColor& color);

// Black for a dark colour (luma below 0.55), white for a light one, with the same alpha: it goes with the colour's own
// lightness and does not stand out from it.
platform::UIColor contrast(const platform::UIColor& color);

// Refers to the colours that it was made of, which outlive it.
struct BackgroundChoice {
    platform::CGFloat threshold; // the luma, 0...1, above which a colour counts as light
    const platform::UIColor& bright;
    const platform::UIColor& dark;
};
// The background that suits `color`: `dark` under a light colour, `bright` under one whose luma is at the threshold or
// below. Gives the very object of the choice. Alpha does not count.
const platform::UIColor& bestBackgroundColor(const platform::UIColor& color, const BackgroundChoice& choice);

} // namespace zelk
