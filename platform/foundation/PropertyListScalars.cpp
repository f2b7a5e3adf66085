// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListScalars_p.h"

#include <charconv>
#include <limits>

namespace platform {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view spaces = " \t\r\n";
    auto begin = text.find_first_not_of(spaces);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(spaces) - begin + 1);
}

std::string_view withoutPlus(std::string_view text)
{
    return text.size() > 1 && text[0] == '+' && text[1] != '-' ? text.substr(1) : text;
}

// Decimal, or hexadecimal after 0x.
std::optional<std::int64_t> integer(std::string_view text)
{
    text = withoutPlus(text);
    bool isNegative = text.starts_with('-');
    auto digits = text.substr(isNegative ? 1 : 0);
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    std::uint64_t magnitude = 0;
    auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, base);
    if (fault != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (magnitude > largest + (isNegative ? 1 : 0))
        return std::nullopt;
    // two's complement makes the smallest number come out right
    return static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
}

std::optional<double> real(std::string_view text)
{
    text = withoutPlus(text);
    double value = 0;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

// 2024-02-29T23:59:59Z
std::optional<PropertyListDate> date(std::string_view text)
{
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != form.size())
        return std::nullopt;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == 'd' ? text[i] < '0' || text[i] > '9' : text[i] != form[i])
            return std::nullopt;
    }
    auto number = [&](std::size_t at, std::size_t digits) {
        int value = 0;
        for (char digit : text.substr(at, digits))
            value = value * 10 + (digit - '0');
        return value;
    };
    std::chrono::year_month_day day(std::chrono::year(number(0, 4)),
                                    std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                    std::chrono::day(static_cast<unsigned>(number(8, 2))));
    if (!day.ok() || number(11, 2) > 23 || number(14, 2) > 59 || number(17, 2) > 59)
        return std::nullopt;
    return std::chrono::sys_days(day) + std::chrono::hours(number(11, 2))
        + std::chrono::minutes(number(14, 2)) + std::chrono::seconds(number(17, 2));
}

int base64Value(char c)
{
    if (c >= 'A' && c <= 'Z')
        return c - 'A';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 26;
    if (c >= '0' && c <= '9')
        return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

std::optional<PropertyListData> base64(std::string_view text)
{
    PropertyListData bytes;
    unsigned bits = 0;
    std::size_t digits = 0, padding = 0;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n')
            continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        int value = base64Value(c);
        if (value < 0 || padding > 0)
            return std::nullopt;
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFFFF;
        if (++digits % 4 != 1)
            bytes.push_back(static_cast<std::byte>(bits >> (6 - 2 * ((digits - 1) % 4)) & 0xFF));
    }
    if (digits % 4 == 1 || (digits + padding) % 4 != 0 || padding > 2)
        return std::nullopt;
    return bytes;
}

template <class Value>
std::optional<PropertyListValue> wrapped(std::optional<Value> value)
{
    if (!value)
        return std::nullopt;
    return PropertyListValue(PropertyListValue::Storage(std::move(*value)));
}

} // namespace

std::optional<PropertyListValue> propertyListScalar(std::string_view name, std::string_view text)
{
    text = trimmed(text);
    if (name == "integer")
        return wrapped(integer(text));
    if (name == "real")
        return wrapped(real(text));
    if (name == "date")
        return wrapped(date(text));
    if (name == "data")
        return wrapped(base64(text));
    if (!text.empty())
        return std::nullopt;
    return PropertyListValue(PropertyListValue::Storage(name == "true"));
}

} // namespace platform
