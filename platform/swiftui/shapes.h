// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Shape.h"

#include <algorithm>

namespace platform {

// The shapes that come with the layer. Each is a view by itself, filled with the colour of the surroundings.

struct Rectangle {
    UIBezierPath path(CGRect rect) const { return UIBezierPath::rect(rect); }
    using Node = ShapeViewNode<Rectangle>;
    bool operator==(const Rectangle&) const = default;
};

// Its radius, in points, moves in animations.
struct RoundedRectangle {
    CGFloat cornerRadius = 0; // above half of the shorter side it counts as that half

    UIBezierPath path(CGRect rect) const { return UIBezierPath::roundedRect(rect, cornerRadius); }
    std::vector<double> animatableData() const { return {cornerRadius}; }
    void setAnimatableData(const std::vector<double>& data) { cornerRadius = data.front(); }
    using Node = ShapeViewNode<RoundedRectangle>;
    bool operator==(const RoundedRectangle&) const = default;
};

// The largest circle in the middle.
struct Circle {
    UIBezierPath path(CGRect rect) const
    {
        auto side = std::min(rect.width(), rect.height());
        return UIBezierPath::oval(CGRect::make(rect.midX() - side / 2, rect.midY() - side / 2, side, side));
    }
    using Node = ShapeViewNode<Circle>;
    bool operator==(const Circle&) const = default;
};

// A rectangle whose short sides are half circles.
struct Capsule {
    UIBezierPath path(CGRect rect) const
    {
        return UIBezierPath::roundedRect(rect, std::min(rect.width(), rect.height()) / 2);
    }
    using Node = ShapeViewNode<Capsule>;
    bool operator==(const Capsule&) const = default;
};

struct Ellipse {
    UIBezierPath path(CGRect rect) const { return UIBezierPath::oval(rect); }
    using Node = ShapeViewNode<Ellipse>;
    bool operator==(const Ellipse&) const = default;
};

} // namespace platform
