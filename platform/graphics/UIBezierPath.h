// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIRectCorner.h"

#include <array>
#include <vector>

namespace platform {

enum class FillRule { nonZero, evenOdd };
enum class ArcDirection { clockwise, counterclockwise }; // as seen on screen

// Lines and curves, as a value in points. An element added to an empty path starts at (0, 0).
class UIBezierPath {
public:
    enum class ElementKind : unsigned char { move, line, quad, curve, close };
    struct Element {
        ElementKind kind = ElementKind::move;
        // The end point comes last: move, line {end}; quad {control, end}; curve {control, control, end}.
        std::array<CGPoint, 3> points{};
        bool operator==(const Element&) const = default;
    };

    UIBezierPath() = default;
    static UIBezierPath rect(const CGRect& rect);
    static UIBezierPath oval(const CGRect& rect);
    // A radius above half the shorter side counts as that half; the corners not listed are square.
    static UIBezierPath roundedRect(const CGRect& rect, CGFloat radius,
                                    UIRectCorner corners = UIRectCorner::allCorners);

    bool isEmpty() const { return elements_.empty(); }
    const std::vector<Element>& elements() const { return elements_; }
    CGPoint currentPoint() const;
    // The smallest upright rectangle that holds the curve itself, not its control points; null when empty.
    CGRect bounds() const;
    bool contains(CGPoint point, FillRule rule = FillRule::nonZero) const;

    void moveTo(CGPoint point);
    void addLine(CGPoint end);
    void addQuad(CGPoint end, CGPoint control);
    void addCurve(CGPoint end, CGPoint control1, CGPoint control2);
    // Angles in radians from the positive x axis, growing clockwise on screen. Joined to what was there by
    // a line.
    void addArc(CGPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle,
                ArcDirection direction = ArcDirection::clockwise);
    // Back to where the present subpath began. Does nothing to an empty path.
    void close();
    void append(const UIBezierPath& other);
    void transform(const CGAffineTransform& transform);
    UIBezierPath transformed(const CGAffineTransform& transform) const;

    bool operator==(const UIBezierPath&) const = default;

private:
    void ensureStarted();
    void add(ElementKind kind, CGPoint a, CGPoint b = {}, CGPoint c = {});

    std::vector<Element> elements_;
};

} // namespace platform
