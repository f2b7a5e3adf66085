// SPDX-License-Identifier: MIT
#include "platform/network/HTTPHeaderFields.h"

#include <algorithm>

namespace platform {

namespace {

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isTokenCharacter(char c)
{
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    char letter = lowered(c);
    return (letter >= 'a' && letter <= 'z') || (c >= '0' && c <= '9')
        || marks.find(c) != std::string_view::npos;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

bool HTTPFieldNameLess::operator()(std::string_view a, std::string_view b) const
{
    return std::ranges::lexicographical_compare(a, b, {}, lowered, lowered);
}

std::optional<std::string> valueForHTTPHeaderField(const HTTPHeaderFields& fields, std::string_view name)
{
    auto found = fields.find(name);
    return found == fields.end() ? std::nullopt : std::optional(found->second);
}

void addHTTPHeaderField(HTTPHeaderFields& fields, std::string_view name, std::string_view value)
{
    auto found = fields.find(name);
    if (found == fields.end())
        fields.emplace(name, value);
    else
        found->second.append(", ").append(value);
}

bool isValidHTTPHeaderField(std::string_view name, std::string_view value)
{
    auto isControl = [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F; };
    return !name.empty() && std::ranges::all_of(name, isTokenCharacter)
        && std::ranges::none_of(value, isControl)
        && (value.empty() || (!isBlank(value.front()) && !isBlank(value.back())));
}

} // namespace platform
