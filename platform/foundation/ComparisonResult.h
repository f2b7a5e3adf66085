// SPDX-License-Identifier: MIT
#pragma once

#include <compare>

namespace platform {

// How a first value stands to a second. The numbers are the platform's.
enum class ComparisonResult : int {
    orderedAscending = -1,
    orderedSame = 0,
    orderedDescending = 1,
};

constexpr ComparisonResult comparisonResult(std::strong_ordering order)
{
    if (order < 0)
        return ComparisonResult::orderedAscending;
    return order > 0 ? ComparisonResult::orderedDescending : ComparisonResult::orderedSame;
}

} // namespace platform
