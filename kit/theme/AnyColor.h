// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Color.h"

#include <concepts>

namespace zelk {

// Either of the platform's two colour types, for what the kit makes of both under one name.
template <class Type>
concept AnyColor = std::same_as<Type, platform::UIColor> || std::same_as<Type, platform::Color>;

} // namespace zelk
