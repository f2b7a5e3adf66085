// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

// The values from one bound to another, both inside. Requires: the lower bound is not above the upper.
template <class Bound>
class ClosedRange {
public:
    constexpr ClosedRange(Bound lowerBound, Bound upperBound)
        : lowerBound_(std::move(lowerBound))
        , upperBound_(std::move(upperBound))
    {
        precondition(!(upperBound_ < lowerBound_), "the lower bound of a range is above its upper bound");
    }

    constexpr const Bound& lowerBound() const { return lowerBound_; }
    constexpr const Bound& upperBound() const { return upperBound_; }
    bool operator==(const ClosedRange&) const = default;

private:
    Bound lowerBound_;
    Bound upperBound_;
};

} // namespace platform
