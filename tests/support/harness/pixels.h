// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <string>

namespace harness {

// Questions to a picture, in points. A place outside of it is a fault of the test.

// The colour at a place, rounded to bytes: "rrggbb", or "rrggbbaa" where it is not opaque.
std::string colorAt(const platform::UIImage& image, platform::CGPoint place);

// The smallest rectangle, inside of `in`, around the pixels that differ from the colour at the top left of `in` by more
// than `tolerance` bytes in a channel. Empty when there are none: nothing is drawn there.
platform::CGRect inkBounds(const platform::UIImage& image, platform::CGRect in, int tolerance = 8);
platform::CGRect inkBounds(const platform::UIImage& image, int tolerance = 8);

// The mean colour of a rectangle, as colorAt writes it.
std::string averageColor(const platform::UIImage& image, platform::CGRect in);

// The share of pixels in the rectangle, 0 to 1, that have the colour, within `tolerance` bytes in each channel.
double shareOf(const platform::UIImage& image, std::string_view color, platform::CGRect in,
               int tolerance = 8);

// The share of pixels, 0 to 1, in which two pictures of one size differ by more than `tolerance` bytes in a channel.
double differenceOf(const platform::UIImage& a, const platform::UIImage& b, int tolerance = 8);

// The picture as in a mirror: what right-to-left should look like of something without text.
platform::UIImage mirrored(const platform::UIImage& image);

} // namespace harness
