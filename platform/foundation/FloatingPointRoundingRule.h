// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

enum class FloatingPointRoundingRule {
    toNearestOrAwayFromZero,
    toNearestOrEven,
    up,
    down,
    towardZero,
    awayFromZero,
};

// Infinities and not-a-number stay what they are, whatever the process's rounding mode. Any thread.
double rounded(double value, FloatingPointRoundingRule rule);

} // namespace platform
