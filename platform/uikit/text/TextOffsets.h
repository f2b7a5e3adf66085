// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextOffset.h"

#include <algorithm>
#include <cstdint>

namespace platform {

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
