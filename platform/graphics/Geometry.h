// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

// Points, sizes, rectangles and affine maps, as values. Coordinates are points (one point is `scale`
// pixels), the origin is top left, y grows downwards.
using CGFloat = double;

struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(const CGPoint&) const = default;
    friend CGPoint operator+(CGPoint a, CGPoint b) { return {a.x + b.x, a.y + b.y}; }
    friend CGPoint operator-(CGPoint a, CGPoint b) { return {a.x - b.x, a.y - b.y}; }
};

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(const CGSize&) const = default;
};

struct CGVector {
    CGFloat dx = 0;
    CGFloat dy = 0;
    bool operator==(const CGVector&) const = default;
};

// Distances inwards from the four edges; negative ones point outwards.
struct UIEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    bool operator==(const UIEdgeInsets&) const = default;
};

// A rectangle of non-negative size. The null rectangle (no place at all) differs from an empty one: it is
// the neutral element of unionWith.
struct CGRect {
    CGPoint origin;
    CGSize size;

    static CGRect make(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
    {
        return {{x, y}, {width, height}};
    }
    static CGRect null()
    {
        constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
        return {{infinity, infinity}, {0, 0}};
    }

    CGFloat minX() const { return origin.x; }
    CGFloat midX() const { return origin.x + size.width / 2; }
    CGFloat maxX() const { return origin.x + size.width; }
    CGFloat minY() const { return origin.y; }
    CGFloat midY() const { return origin.y + size.height / 2; }
    CGFloat maxY() const { return origin.y + size.height; }
    CGFloat width() const { return size.width; }
    CGFloat height() const { return size.height; }
    CGPoint center() const { return {midX(), midY()}; }

    bool isNull() const { return std::isinf(origin.x) || std::isinf(origin.y); }
    // No area. The null rectangle is empty too.
    bool isEmpty() const { return isNull() || !(size.width > 0) || !(size.height > 0); }
    // The right and bottom edges are outside.
    bool contains(CGPoint point) const
    {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }
    bool contains(const CGRect& other) const
    {
        return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY()
            && other.maxY() <= maxY();
    }
    bool intersects(const CGRect& other) const { return !intersection(other).isEmpty(); }

    // Null when the two do not meet.
    CGRect intersection(const CGRect& other) const
    {
        if (isNull() || other.isNull())
            return null();
        auto left = std::max(minX(), other.minX());
        auto top = std::max(minY(), other.minY());
        auto right = std::min(maxX(), other.maxX());
        auto bottom = std::min(maxY(), other.maxY());
        return left > right || top > bottom ? null() : make(left, top, right - left, bottom - top);
    }
    // The smallest rectangle that holds both.
    CGRect unionWith(const CGRect& other) const
    {
        if (isNull())
            return other;
        if (other.isNull())
            return *this;
        auto left = std::min(minX(), other.minX());
        auto top = std::min(minY(), other.minY());
        return make(left, top, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - top);
    }
    CGRect offsetBy(CGFloat dx, CGFloat dy) const
    {
        return make(origin.x + dx, origin.y + dy, size.width, size.height);
    }
    // Null when the insets leave nothing.
    CGRect insetBy(CGFloat dx, CGFloat dy) const { return inset({dy, dx, dy, dx}); }
    CGRect inset(const UIEdgeInsets& insets) const
    {
        auto width = size.width - insets.left - insets.right;
        auto height = size.height - insets.top - insets.bottom;
        if (isNull() || width < 0 || height < 0)
            return null();
        return make(origin.x + insets.left, origin.y + insets.top, width, height);
    }

    bool operator==(const CGRect&) const = default;
};

// The affine map (x, y) -> (a x + c y + tx, b x + d y + ty).
struct CGAffineTransform {
    CGFloat a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static CGAffineTransform translation(CGFloat x, CGFloat y) { return {1, 0, 0, 1, x, y}; }
    static CGAffineTransform scale(CGFloat x, CGFloat y) { return {x, 0, 0, y, 0, 0}; }
    // `radians` turn clockwise on screen, as y grows downwards.
    static CGAffineTransform rotation(CGFloat radians)
    {
        return {std::cos(radians), std::sin(radians), -std::sin(radians), std::cos(radians), 0, 0};
    }

    bool isIdentity() const { return *this == CGAffineTransform{}; }
    CGFloat determinant() const { return a * d - b * c; }
    // This map first, then `next`.
    CGAffineTransform concatenating(const CGAffineTransform& next) const
    {
        return {a * next.a + b * next.c,
                a * next.b + b * next.d,
                c * next.a + d * next.c,
                c * next.b + d * next.d,
                tx * next.a + ty * next.c + next.tx,
                tx * next.b + ty * next.d + next.ty};
    }
    // The map itself when it has no inverse, as on the platform.
    CGAffineTransform inverted() const
    {
        auto det = determinant();
        if (det == 0)
            return *this;
        return {d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det};
    }
    CGPoint apply(CGPoint point) const
    {
        return {a * point.x + c * point.y + tx, b * point.x + d * point.y + ty};
    }
    // The smallest upright rectangle that holds the image of `rect`.
    CGRect apply(const CGRect& rect) const
    {
        auto result = CGRect::null();
        for (CGPoint corner : {rect.origin, CGPoint{rect.maxX(), rect.minY()},
                               CGPoint{rect.minX(), rect.maxY()}, CGPoint{rect.maxX(), rect.maxY()}})
            result = result.unionWith({apply(corner), {}});
        return result;
    }
    bool operator==(const CGAffineTransform&) const = default;
};

} // namespace platform
