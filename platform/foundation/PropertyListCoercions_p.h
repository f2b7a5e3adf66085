// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

// A value as another type, as the platform converts settings; nothing where it does not. See NSUserDefaults.h.
std::optional<std::string> coercedToString(const PropertyListValue& value);
std::optional<std::int64_t> coercedToInteger(const PropertyListValue& value);
std::optional<double> coercedToDouble(const PropertyListValue& value);
std::optional<bool> coercedToBool(const PropertyListValue& value);

} // namespace platform
