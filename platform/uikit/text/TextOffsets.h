// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
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
// Lines are what line ends ("\n", "\r\n" or a lone "\r") separate, counted from 0. A text that ends in a line
// end has an empty last line.
using LineNumber = TextOffset<struct LineUnit>;

// The bytes from `start` up to `end`. start <= end.
struct TextRange {
    Utf8Offset start;
    Utf8Offset end;

    std::int64_t size() const { return end - start; }
    bool isEmpty() const { return start >= end; }
    bool contains(Utf8Offset offset) const { return offset >= start && offset < end; }
    TextRange intersection(TextRange other) const
    {
        auto from = std::max(start, other.start);
        return {from, std::max(from, std::min(end, other.end))};
    }
    bool operator==(const TextRange&) const = default;
};

} // namespace platform
