// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListCoercions_p.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace platform {

namespace {

// Without the space before it and a plus sign.
std::string_view numberBegin(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

std::int64_t leadingInteger(std::string_view text)
{
    text = numberBegin(text);
    std::int64_t value = 0;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc::result_out_of_range)
        return value;
    using Limits = std::numeric_limits<std::int64_t>;
    return text.starts_with('-') ? Limits::min() : Limits::max();
}

double leadingDouble(std::string_view text)
{
    text = numberBegin(text);
    // Words are no numbers, though the conversion knows "inf" and "nan".
    auto first = text.substr(text.starts_with('-') ? 1 : 0, 1);
    if (first.empty() || !((first[0] >= '0' && first[0] <= '9') || first[0] == '.'))
        return 0;
    double value = 0;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc::result_out_of_range)
        return value;
    // Beyond the range at one end or the other: the exponent tells which, or else the digits before the point.
    std::string_view number(text.data(), end);
    auto exponent = number.find_first_of("eE");
    bool isTiny = exponent != std::string_view::npos ? number.substr(exponent + 1, 1) == "-"
                                                     : number.find_first_not_of("-0") == number.find('.');
    double magnitude = isTiny ? 0 : std::numeric_limits<double>::infinity();
    return text.starts_with('-') ? -magnitude : magnitude;
}

bool leadingTruth(std::string_view text)
{
    text = numberBegin(text);
    if (text.starts_with('-'))
        text.remove_prefix(1);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return !text.empty() && std::string_view("YyTt123456789").find(text[0]) != std::string_view::npos;
}

std::int64_t truncated(double real)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (std::isnan(real))
        return 0;
    if (real >= 0x1p63)
        return Limits::max();
    return real < -0x1p63 ? Limits::min() : static_cast<std::int64_t>(real);
}

} // namespace

std::optional<std::string> coercedToString(const PropertyListValue& value)
{
    if (auto* text = value.as<std::string>())
        return *text;
    if (auto* truth = value.as<bool>())
        return *truth ? "1" : "0";
    if (auto* integer = value.as<std::int64_t>())
        return std::to_string(*integer);
    if (auto* real = value.as<double>()) {
        char digits[32];
        return std::string(digits, std::to_chars(digits, digits + sizeof digits, *real).ptr);
    }
    return std::nullopt;
}

std::optional<std::int64_t> coercedToInteger(const PropertyListValue& value)
{
    if (auto* integer = value.as<std::int64_t>())
        return *integer;
    if (auto* truth = value.as<bool>())
        return *truth ? 1 : 0;
    if (auto* real = value.as<double>())
        return truncated(*real);
    if (auto* text = value.as<std::string>())
        return leadingInteger(*text);
    return std::nullopt;
}

std::optional<double> coercedToDouble(const PropertyListValue& value)
{
    if (auto* real = value.as<double>())
        return *real;
    if (auto* text = value.as<std::string>())
        return leadingDouble(*text);
    if (auto integer = coercedToInteger(value))
        return static_cast<double>(*integer);
    return std::nullopt;
}

std::optional<bool> coercedToBool(const PropertyListValue& value)
{
    if (auto* text = value.as<std::string>())
        return leadingTruth(*text);
    if (auto number = coercedToDouble(value))
        return *number != 0;
    return std::nullopt;
}

} // namespace platform
