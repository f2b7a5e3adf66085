// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIRectCorner.h"

#include <optional>

namespace platform {

// A rectangle of which the listed corners are round: what UIBezierPath::roundedRect draws, by its numbers.
struct RoundedRect {
    CGRect rect;
    CGFloat radius = 0; // at most half of the shorter side counts
    UIRectCorner corners = UIRectCorner::allCorners;

    CGFloat usableRadius() const;
    bool hasRoundTop() const
    {
        return (corners & (UIRectCorner::topLeft | UIRectCorner::topRight)) != UIRectCorner::none;
    }
    bool hasRoundBottom() const
    {
        return (corners & (UIRectCorner::bottomLeft | UIRectCorner::bottomRight)) != UIRectCorner::none;
    }
    // The part from side to side in which no corner is; null where there is none.
    CGRect middle() const;
};

// Nothing for an outline of any other kind.
std::optional<RoundedRect> roundedRectOf(const UIBezierPath& path);

} // namespace platform
