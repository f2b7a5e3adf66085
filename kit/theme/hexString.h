// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Color.h"

#include <optional>
#include <string>

namespace zelk {

// The colour as it is stored: eight upper-case hexadecimal digits, two each for red, green, blue and alpha, components
// cut to 0...1. Reading it with colorFromHex gives each component back to within 1/255. A dynamic colour is written as it
// is in the current appearance. Nothing for a pattern.
std::optional<std::string> hexString(const platform::UIColor& color);
// Nothing also for a colour that depends on where it is shown.
std::optional<std::string> hexString(const platform::Color& color);

} // namespace zelk
