// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextOffset.h"

#include <cstdint>

namespace platform {

// A part of a text in UTF-16 units, as the platform counts.
struct NSRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    Utf16Offset start() const { return {location}; }
    Utf16Offset end() const { return {location + length}; }
    bool isEmpty() const { return length <= 0; }
    bool operator==(const NSRange&) const = default;

    static NSRange between(Utf16Offset start, Utf16Offset end) { return {start.value, end - start}; }
};

} // namespace platform
