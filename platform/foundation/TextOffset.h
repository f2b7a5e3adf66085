// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>

namespace platform {

// A place between two units of a text, counted from its beginning. Bytes and UTF-16 units do not mix.
template <class Unit>
struct TextOffset {
    std::int64_t value = 0;
    auto operator<=>(const TextOffset&) const = default;
    friend TextOffset operator+(TextOffset offset, std::int64_t units) { return {offset.value + units}; }
    friend TextOffset operator-(TextOffset offset, std::int64_t units) { return {offset.value - units}; }
    friend std::int64_t operator-(TextOffset a, TextOffset b) { return a.value - b.value; }
};
using Utf8Offset = TextOffset<struct Utf8Unit>;
using Utf16Offset = TextOffset<struct Utf16Unit>;

} // namespace platform
