// SPDX-License-Identifier: MIT
#pragma once

namespace zelk {

// On which systems a scroll view shows its indicators; an option set.
struct ScrollViewIndicators {
    int rawValue = 0;
    static const ScrollViewIndicators iOS, macCatalyst, all;
    constexpr bool contains(ScrollViewIndicators other) const
    {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    constexpr ScrollViewIndicators operator|(ScrollViewIndicators other) const
    {
        return {rawValue | other.rawValue};
    }
    bool operator==(const ScrollViewIndicators&) const = default;
};
inline constexpr ScrollViewIndicators ScrollViewIndicators::iOS{1}, ScrollViewIndicators::macCatalyst{2},
    ScrollViewIndicators::all{3};

} // namespace zelk
