// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace platform {

// The space that a parent offers, in points. An absent length asks for the ideal one, zero for the smallest,
// infinity for the largest.
struct ProposedSize {
    std::optional<CGFloat> width;
    std::optional<CGFloat> height;

    static ProposedSize unspecified() { return {}; }
    static ProposedSize zero() { return {0.0, 0.0}; }
    static ProposedSize infinite()
    {
        constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
        return {infinity, infinity};
    }
    static ProposedSize of(CGSize size) { return {size.width, size.height}; }

    // What a view without a wish of its own takes: the offer, or 10 points where there is none, as on the
    // platform.
    CGSize replacingUnspecified(CGSize fallback = {10, 10}) const
    {
        return {width.value_or(fallback.width), height.value_or(fallback.height)};
    }
    bool operator==(const ProposedSize&) const = default;
};

// A length that layout can compute with: not-a-number and negative ones count as 0.
inline CGFloat usableLength(CGFloat length)
{
    return length > 0 ? length : 0;
}

} // namespace platform
