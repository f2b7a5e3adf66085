// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Color.h"

#include <optional>

namespace zelk {

// The same colour for the view layer; nothing for one that depends on where it is shown.
std::optional<platform::UIColor> uiColor(const platform::Color& color);

} // namespace zelk
