// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/ClosedRange.h"

#include <algorithm>
#include <concepts>
#include <type_traits>

namespace zelk {

// The value of the range that is nearest to `value`.
template <std::totally_ordered Value>
constexpr Value clamped(const Value& value, const platform::ClosedRange<Value>& range)
{
    return std::min(std::max(value, range.lowerBound()), range.upperBound());
}

// First not below `min`, then not above `max`: where the two are the wrong way round the result is `max`.
template <std::totally_ordered Value>
constexpr Value clamped(const Value& value, const std::type_identity_t<Value>& min,
                        const std::type_identity_t<Value>& max)
{
    return std::min(std::max(min, value), max);
}

} // namespace zelk
