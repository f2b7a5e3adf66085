// SPDX-License-Identifier: MIT
#include "platform/graphics/RoundedRect.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

using Element = UIBezierPath::Element;
using Kind = UIBezierPath::ElementKind;

CGPoint endOf(const Element& element)
{
    return element.points[element.kind == Kind::curve ? 2 : element.kind == Kind::quad ? 1 : 0];
}

UIRectCorner cornerNearest(const CGRect& rect, CGPoint point)
{
    auto isLeft = point.x < rect.midX(), isTop = point.y < rect.midY();
    return isTop ? (isLeft ? UIRectCorner::topLeft : UIRectCorner::topRight)
                 : (isLeft ? UIRectCorner::bottomLeft : UIRectCorner::bottomRight);
}

bool isSame(const UIBezierPath& a, const UIBezierPath& b)
{
    constexpr CGFloat rounding = 1e-6; // points
    return std::ranges::equal(a.elements(), b.elements(), [](const Element& one, const Element& other) {
        return one.kind == other.kind
            && std::ranges::equal(one.points, other.points, [](CGPoint p, CGPoint q) {
                   return std::abs(p.x - q.x) < rounding && std::abs(p.y - q.y) < rounding;
               });
    });
}

} // namespace

CGFloat RoundedRect::usableRadius() const
{
    return corners == UIRectCorner::none
        ? 0
        : std::max(std::min({radius, rect.width() / 2, rect.height() / 2}), 0.0);
}

CGRect RoundedRect::middle() const
{
    auto reach = usableRadius();
    return rect.inset({hasRoundTop() ? reach : 0, 0, hasRoundBottom() ? reach : 0, 0});
}

// The numbers are read off the outline, and it is one if it is drawn again by them.
std::optional<RoundedRect> roundedRectOf(const UIBezierPath& path)
{
    constexpr std::size_t mostElements = 10; // a move, four corners of two each, and the end
    auto& elements = path.elements();
    if (elements.size() < 5 || elements.size() > mostElements || elements.back().kind != Kind::close)
        return std::nullopt;
    auto box = CGRect::null();
    for (auto& element : elements) {
        if (element.kind != Kind::close)
            box = box.unionWith({endOf(element), {}});
    }
    RoundedRect result{box, 0, UIRectCorner::none};
    for (std::size_t i = 1; i < elements.size(); ++i) {
        if (elements[i].kind != Kind::curve)
            continue;
        auto from = endOf(elements[i - 1]), to = endOf(elements[i]);
        result.radius = std::max(result.radius, std::abs(to.x - from.x));
        result.corners = result.corners | cornerNearest(box, {(from.x + to.x) / 2, (from.y + to.y) / 2});
    }
    auto again = UIBezierPath::roundedRect(result.rect, result.radius, result.corners);
    return isSame(path, again) ? std::optional(result) : std::nullopt;
}

} // namespace platform
