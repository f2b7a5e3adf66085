// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"

#include <optional>
#include <string_view>

namespace platform {

// The value of an element `name` (integer, real, true, false, date, data) that holds `text`; nothing when the
// text is not of that type. Space around it does not count.
std::optional<PropertyListValue> propertyListScalar(std::string_view name, std::string_view text);

} // namespace platform
