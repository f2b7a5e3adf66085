// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace platform {

// Distances inwards from edges, in points; leading is where reading begins.
struct EdgeInsets {
    CGFloat top = 0;
    CGFloat leading = 0;
    CGFloat bottom = 0;
    CGFloat trailing = 0;
    bool operator==(const EdgeInsets&) const = default;
};

// Which edges; an option set.
struct EdgeSet {
    unsigned rawValue = 0;
    static const EdgeSet top, leading, bottom, trailing, horizontal, vertical, all;
    constexpr bool contains(EdgeSet other) const { return (rawValue & other.rawValue) == other.rawValue; }
    friend constexpr EdgeSet operator|(EdgeSet a, EdgeSet b) { return {a.rawValue | b.rawValue}; }
    bool operator==(const EdgeSet&) const = default;
};

inline constexpr EdgeSet EdgeSet::top{1}, EdgeSet::leading{2}, EdgeSet::bottom{4}, EdgeSet::trailing{8},
    EdgeSet::horizontal{2 | 8}, EdgeSet::vertical{1 | 4}, EdgeSet::all{15};

} // namespace platform
