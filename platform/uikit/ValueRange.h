// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

namespace platform {

// The numbers between two ends, as controls choose among them. Anything can be written into it; `proper()` makes a range
// of it that can be calculated with, and the calculations require that.
struct ValueRange {
    double lower = 0;
    double upper = 1;

    // An end that is no finite number is that of `fallback`; ends that are crossed meet at the lower one.
    ValueRange proper(const ValueRange& fallback = {0, 1}) const
    {
        auto from = std::isfinite(lower) ? lower : fallback.lower;
        auto to = std::isfinite(upper) ? upper : fallback.upper;
        return {from, std::max(from, to)};
    }
    bool isEmpty() const { return !(lower < upper); }
    // Halves, because the whole may be more than there are numbers.
    double halfSpan() const { return upper / 2 - lower / 2; }
    // Not-a-number gives the lower end.
    double clamped(double value) const { return std::isnan(value) ? lower : std::clamp(value, lower, upper); }
    // Where a value lies between the ends, 0...1. Of an empty range everything is at its beginning.
    double fractionOf(double value) const
    {
        return isEmpty() ? 0 : std::clamp((clamped(value) / 2 - lower / 2) / halfSpan(), 0.0, 1.0);
    }
    double valueAt(double fraction) const
    {
        auto part = std::isnan(fraction) ? 0 : std::clamp(fraction, 0.0, 1.0);
        return clamped(lower * (1 - part) + upper * part);
    }
    // The nearest value that is a whole number of steps from the lower end; the upper end is always one. No positive step:
    // the value itself.
    double snapped(double value, double step) const
    {
        auto inside = clamped(value);
        if (!(step > 0) || !std::isfinite(step) || isEmpty())
            return inside;
        auto steps = std::round((inside / 2 - lower / 2) / (step / 2));
        auto below = clamped(lower + steps * step);
        return upper - inside < std::abs(inside - below) ? upper : below;
    }

    bool operator==(const ValueRange&) const = default;
};

} // namespace platform
