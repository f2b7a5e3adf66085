// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIRectCorner.h"
#include "platform/swiftui/Shape.h"

#include <vector>

namespace bottomsheet {

// A rectangle whose listed corners are round. The corners are those of the screen: left stays left where reading begins on
// the right.
struct RoundedCorner {
    platform::CGFloat radius =
        0; // points; above half of the shorter side it counts as that half, without a sense as 0
    platform::UIRectCorner corners = platform::UIRectCorner::allCorners;

    platform::UIBezierPath path(platform::CGRect rect) const
    {
        return platform::UIBezierPath::roundedRect(rect, platform::usableLength(radius), corners);
    }
    std::vector<double> animatableData() const { return {radius}; }
    void setAnimatableData(const std::vector<double>& data) { radius = data.front(); }
    using Node = platform::ShapeViewNode<RoundedCorner>;
    bool operator==(const RoundedCorner&) const = default;
};

} // namespace bottomsheet
