// SPDX-License-Identifier: MIT
#include "kit/data/PropertyListBridge.h"

#include "platform/foundation/UTF8.h"

namespace zelk::bridging {

using namespace platform;

std::optional<std::int64_t> exactInteger(const PropertyListValue& object)
{
    if (auto* integer = object.as<std::int64_t>())
        return *integer;
    if (auto* truth = object.as<bool>())
        return *truth ? 1 : 0;
    auto* real = object.as<double>();
    // the comparisons also refuse what is not a number
    if (!real || !(*real >= -0x1p63 && *real < 0x1p63))
        return std::nullopt;
    auto integer = static_cast<std::int64_t>(*real);
    return static_cast<double>(integer) == *real ? std::optional(integer) : std::nullopt;
}

std::optional<double> exactDouble(const PropertyListValue& object)
{
    if (auto* real = object.as<double>())
        return *real;
    auto integer = exactInteger(object);
    if (!integer)
        return std::nullopt;
    auto real = static_cast<double>(*integer);
    // 2^63 is the one value that the way back could not hold
    bool isExact = real < 0x1p63 && static_cast<std::int64_t>(real) == *integer;
    return isExact ? std::optional(real) : std::nullopt;
}

std::optional<String> text(const PropertyListValue& object)
{
    // What this process stored itself may be anything; what was read from a file is well-formed.
    auto* text = object.as<std::string>();
    return text && isWellFormedUTF8(*text) ? std::optional(String(*text)) : std::nullopt;
}

} // namespace zelk::bridging
