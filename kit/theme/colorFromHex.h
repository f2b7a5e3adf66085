// SPDX-License-Identifier: MIT
#pragma once

#include "kit/theme/AnyColor.h"

#include <optional>
#include <string_view>

namespace zelk {

// The colour that eight hexadecimal digits stand for, two each for red, green, blue and alpha, or six for an opaque one;
// one "#" may stand before them. Nothing for any other number of characters, and when there is no digit to begin with.
// Lenient on purpose: white space before the digits and "0x" count as characters but are skipped, and a character that
// is no digit ends the number, so "12345G" is 0x012345. Any thread.
template <AnyColor Made = platform::UIColor>
std::optional<Made> colorFromHex(std::string_view hex);

template <>
std::optional<platform::UIColor> colorFromHex(std::string_view hex);
template <>
std::optional<platform::Color> colorFromHex(std::string_view hex);

} // namespace zelk
