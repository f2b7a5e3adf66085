// SPDX-License-Identifier: MIT
#include "kit/foundation/compareAppVersions.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <ranges>
#include <vector>

namespace zelk {

using namespace platform;

namespace {

// A sign, "+" included, and digits, and nothing else.
std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t number = 0;
    auto* end = text.data() + text.size();
    auto [stopped, fault] = std::from_chars(text.data(), end, number);
    return fault == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

std::vector<std::int64_t> numbers(std::string_view version)
{
    std::vector<std::int64_t> found;
    for (auto part : std::views::split(version, '.')) {
        if (auto number = wholeNumber(std::string_view(part)))
            found.push_back(*number);
    }
    return found;
}

} // namespace

ComparisonResult compareAppVersions(std::string_view version1, std::string_view version2)
{
    auto first = numbers(version1);
    auto second = numbers(version2);
    auto length = std::max(first.size(), second.size());
    first.resize(length);
    second.resize(length);
    return comparisonResult(first <=> second);
}

} // namespace zelk
