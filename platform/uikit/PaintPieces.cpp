// SPDX-License-Identifier: MIT
#include "platform/uikit/PaintPieces.h"

#include <cmath>

namespace platform {

namespace {

constexpr CGFloat worthwhile = 128 * 128; // pixels
constexpr CGFloat rounding = 1e-4;        // of a pixel

// Edges in pixels.
struct Box {
    CGFloat left, top, right, bottom;

    static Box of(const CGRect& rect) { return {rect.minX(), rect.minY(), rect.maxX(), rect.maxY()}; }
    Box outwards() const
    {
        return {std::floor(left + rounding), std::floor(top + rounding), std::ceil(right - rounding),
                std::ceil(bottom - rounding)};
    }
    Box inwards() const
    {
        return {std::ceil(left - rounding), std::ceil(top - rounding), std::floor(right + rounding),
                std::floor(bottom + rounding)};
    }
    Box within(const Box& other) const
    {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    bool isEmpty() const { return !(left < right) || !(top < bottom); }
    CGFloat area() const { return isEmpty() ? 0 : (right - left) * (bottom - top); }
};

// Between present coordinates and pixels, where that is no more than moving and scaling.
class PixelGrid {
public:
    static std::optional<PixelGrid> of(const CGContext& context)
    {
        auto map = context.pixelTransform();
        if (map.b != 0 || map.c != 0 || !(map.a > 0) || !(map.d > 0))
            return std::nullopt;
        return PixelGrid(map);
    }
    Box pixels(const CGRect& rect) const { return Box::of(map_.apply(rect)); }
    void append(std::vector<CGRect>& rects, const Box& box) const
    {
        if (!box.isEmpty())
            rects.push_back(
                back_.apply(CGRect::make(box.left, box.top, box.right - box.left, box.bottom - box.top)));
    }
    CGFloat width(CGFloat points) const { return points * map_.a; }

private:
    explicit PixelGrid(const CGAffineTransform& map)
        : map_(map)
        , back_(map.inverted())
    {
    }
    CGAffineTransform map_, back_;
};

} // namespace

std::optional<ShapePieces> piecesOf(const RoundedRect& shape, CGRect dirty, const CGContext& context)
{
    auto grid = PixelGrid::of(context);
    if (!grid || dirty.isEmpty() || shape.rect.isEmpty())
        return std::nullopt;
    auto exact = grid->pixels(shape.rect);
    auto outer = exact.outwards(), inner = exact.inwards();
    auto seen = grid->pixels(dirty).outwards().within(outer);
    auto radius = shape.usableRadius();
    // The band between the corners; those above and below it are narrower.
    auto middle = grid->pixels(shape.middle()).inwards();
    if (shape.middle().isEmpty() || seen.within(middle).area() < worthwhile)
        return std::nullopt;
    auto inset = [&](UIRectCorner corner) {
        return contains(shape.corners, corner) ? grid->width(radius) : 0;
    };
    auto between = [&](UIRectCorner left, UIRectCorner right) {
        return Box{exact.left + inset(left), 0, exact.right - inset(right), 0}.inwards();
    };
    ShapePieces pieces;
    auto addBand = [&](CGFloat top, CGFloat bottom, CGFloat left, CGFloat right) {
        grid->append(pieces.inside, Box{left, top, right, bottom}.within(seen));
        grid->append(pieces.edge, Box{outer.left, top, left, bottom}.within(seen));
        grid->append(pieces.edge, Box{right, top, outer.right, bottom}.within(seen));
    };
    auto above = between(UIRectCorner::topLeft, UIRectCorner::topRight);
    auto below = between(UIRectCorner::bottomLeft, UIRectCorner::bottomRight);
    if (above.left > above.right || below.left > below.right)
        return std::nullopt;
    grid->append(pieces.edge, Box{outer.left, outer.top, outer.right, inner.top}.within(seen));
    addBand(inner.top, middle.top, above.left, above.right);
    addBand(middle.top, middle.bottom, inner.left, inner.right);
    addBand(middle.bottom, inner.bottom, below.left, below.right);
    grid->append(pieces.edge, Box{outer.left, inner.bottom, outer.right, outer.bottom}.within(seen));
    return pieces;
}

CGRect wholePixels(CGRect rect, const CGContext& context)
{
    auto grid = PixelGrid::of(context);
    std::vector<CGRect> whole;
    if (grid && !rect.isEmpty())
        grid->append(whole, grid->pixels(rect).outwards());
    return whole.empty() ? rect : whole.front();
}

bool isHiddenBy(CGRect opaque, CGRect dirty, const CGContext& context)
{
    auto grid = PixelGrid::of(context);
    if (!grid || opaque.isEmpty())
        return opaque.contains(dirty);
    // An edge within a pixel covers only a part of it.
    auto hidden = grid->pixels(opaque).inwards(), all = grid->pixels(dirty).outwards();
    return hidden.left <= all.left && hidden.top <= all.top && hidden.right >= all.right
        && hidden.bottom >= all.bottom;
}

std::optional<std::vector<CGRect>> piecesBeside(CGRect opaque, CGRect dirty, const CGContext& context)
{
    auto grid = PixelGrid::of(context);
    if (!grid || dirty.isEmpty() || opaque.isEmpty())
        return std::nullopt;
    auto all = grid->pixels(dirty).outwards();
    auto hidden = grid->pixels(opaque).inwards().within(all);
    if (hidden.area() < worthwhile || hidden.area() * 4 < all.area())
        return std::nullopt;
    auto isFullWidth = hidden.left == all.left && hidden.right == all.right;
    auto isFullHeight = hidden.top == all.top && hidden.bottom == all.bottom;
    if (!isFullWidth && !isFullHeight)
        return std::nullopt;
    std::vector<CGRect> pieces;
    if (isFullWidth) {
        grid->append(pieces, {all.left, all.top, all.right, hidden.top});
        grid->append(pieces, {all.left, hidden.bottom, all.right, all.bottom});
    } else {
        grid->append(pieces, {all.left, all.top, hidden.left, all.bottom});
        grid->append(pieces, {hidden.right, all.top, all.right, all.bottom});
    }
    return pieces;
}

} // namespace platform
