// SPDX-License-Identifier: MIT
#include "platform/foundation/FloatingPointRoundingRule.h"

#include <cmath>

namespace platform {

namespace {

// The library has no such function that leaves the rounding mode alone.
double roundedToEven(double value)
{
    double nearest = std::round(value);
    bool isHalfway = std::abs(value - std::trunc(value)) == 0.5;
    return isHalfway ? 2 * std::round(value / 2) : nearest;
}

} // namespace

double rounded(double value, FloatingPointRoundingRule rule)
{
    switch (rule) {
    case FloatingPointRoundingRule::toNearestOrAwayFromZero:
        return std::round(value);
    case FloatingPointRoundingRule::toNearestOrEven:
        return roundedToEven(value);
    case FloatingPointRoundingRule::up:
        return std::ceil(value);
    case FloatingPointRoundingRule::down:
        return std::floor(value);
    case FloatingPointRoundingRule::towardZero:
        return std::trunc(value);
    case FloatingPointRoundingRule::awayFromZero:
        return std::signbit(value) ? std::floor(value) : std::ceil(value);
    }
    return value;
}

} // namespace platform
