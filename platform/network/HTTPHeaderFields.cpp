// SPDX-License-Identifier: MIT
#include "platform/network/HTTPHeaderFields.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

constexpr char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool isTokenCharacter(char c)
{
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    char letter = lowered(c);
    return (letter >= 'a' && letter <= 'z') || (c >= '0' && c <= '9')
        || marks.find(c) != std::string_view::npos;
}

constexpr auto tokenCharacters = [] {
    std::array<bool, 256> result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = isTokenCharacter(static_cast<char>(i));
    return result;
}();

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

bool isSameHTTPHeaderField(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::ranges::equal(a, b, {}, lowered, lowered);
}

HTTPHeaderFields::HTTPHeaderFields(std::initializer_list<Field> fields)
{
    for (auto& [name, value] : fields)
        emplace(name, value);
}

HTTPHeaderFields::const_iterator HTTPHeaderFields::find(std::string_view name) const
{
    return std::ranges::find_if(fields_,
                                [name](auto& field) { return isSameHTTPHeaderField(field.first, name); });
}

std::string* HTTPHeaderFields::value(std::string_view name)
{
    auto found = find(name);
    return found == end() ? nullptr : &fields_[static_cast<std::size_t>(found - begin())].second;
}

void HTTPHeaderFields::append(std::string_view name, std::string_view value)
{
    constexpr std::size_t usual = 16; // most answers have fewer
    if (fields_.empty())
        fields_.reserve(usual);
    fields_.emplace_back(name, value);
}

void HTTPHeaderFields::emplace(std::string_view name, std::string_view value)
{
    if (!contains(name))
        append(name, value);
}

void HTTPHeaderFields::insert_or_assign(std::string_view name, std::string_view value)
{
    if (auto* known = this->value(name))
        *known = value;
    else
        append(name, value);
}

void HTTPHeaderFields::add(std::string_view name, std::string_view value)
{
    if (auto* known = this->value(name))
        known->append(", ").append(value);
    else
        append(name, value);
}

void HTTPHeaderFields::erase(std::string_view name)
{
    if (auto found = find(name); found != end())
        fields_.erase(found);
}

bool HTTPHeaderFields::operator==(const HTTPHeaderFields& other) const
{
    return size() == other.size() && std::ranges::all_of(fields_, [&](auto& field) {
               auto found = other.find(field.first);
               return found != other.end() && found->second == field.second;
           });
}

std::optional<std::string> valueForHTTPHeaderField(const HTTPHeaderFields& fields, std::string_view name)
{
    auto found = fields.find(name);
    return found == fields.end() ? std::nullopt : std::optional(found->second);
}

bool isValidHTTPHeaderField(std::string_view name, std::string_view value)
{
    auto isToken = [](char c) { return tokenCharacters[static_cast<unsigned char>(c)]; };
    auto isControl = [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F; };
    return !name.empty() && std::ranges::all_of(name, isToken) && std::ranges::none_of(value, isControl)
        && (value.empty() || (!isBlank(value.front()) && !isBlank(value.back())));
}

} // namespace platform
