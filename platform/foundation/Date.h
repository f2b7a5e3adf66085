// SPDX-License-Identifier: MIT
#pragma once

#include <compare>

namespace platform {

// A moment, on no calendar: seconds since 1970-01-01 00:00:00 UTC, without leap seconds. A value.
struct Date {
    double timeIntervalSince1970 = 0;

    // Not-a-number is unordered.
    auto operator<=>(const Date&) const = default;
};

} // namespace platform
