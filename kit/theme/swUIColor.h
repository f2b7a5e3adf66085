// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Color.h"

namespace zelk {

// The same place, read and written as a Color. Writing a colour that depends on where it is shown changes nothing.
platform::Binding<platform::Color> swUIColor(const platform::Binding<platform::UIColor>& source);

} // namespace zelk
