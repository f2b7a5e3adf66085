// SPDX-License-Identifier: MIT
#include "platform/graphics/UIBezierPath_p.h"

#include <numbers>

namespace platform {

namespace {

// The control points' distance, in radii, of the cubic that follows a quarter circle within 0.03 %.
constexpr CGFloat quarterCircle = 0.5522847498307936;

QPointF qPoint(CGPoint point)
{
    return {point.x, point.y};
}

int pointCount(UIBezierPath::ElementKind kind)
{
    using enum UIBezierPath::ElementKind;
    switch (kind) {
    case move:
    case line:
        return 1;
    case quad:
        return 2;
    case curve:
        return 3;
    case close:
        return 0;
    }
    return 0;
}

} // namespace

UIBezierPath UIBezierPath::rect(const CGRect& rect)
{
    UIBezierPath path;
    if (rect.isNull())
        return path;
    path.moveTo(rect.origin);
    path.addLine({rect.maxX(), rect.minY()});
    path.addLine({rect.maxX(), rect.maxY()});
    path.addLine({rect.minX(), rect.maxY()});
    path.close();
    return path;
}

UIBezierPath UIBezierPath::oval(const CGRect& rect)
{
    UIBezierPath path;
    if (rect.isNull())
        return path;
    auto center = rect.center();
    auto dx = rect.width() / 2 * quarterCircle;
    auto dy = rect.height() / 2 * quarterCircle;
    path.moveTo({rect.maxX(), center.y});
    path.addCurve({center.x, rect.maxY()}, {rect.maxX(), center.y + dy}, {center.x + dx, rect.maxY()});
    path.addCurve({rect.minX(), center.y}, {center.x - dx, rect.maxY()}, {rect.minX(), center.y + dy});
    path.addCurve({center.x, rect.minY()}, {rect.minX(), center.y - dy}, {center.x - dx, rect.minY()});
    path.addCurve({rect.maxX(), center.y}, {center.x + dx, rect.minY()}, {rect.maxX(), center.y - dy});
    path.close();
    return path;
}

UIBezierPath UIBezierPath::roundedRect(const CGRect& rect, CGFloat radius, UIRectCorner corners)
{
    radius = std::min({radius, rect.width() / 2, rect.height() / 2});
    if (rect.isNull() || !(radius > 0) || corners == UIRectCorner::none)
        return UIBezierPath::rect(rect);

    UIBezierPath path;
    // Goes round clockwise; at each corner, in from one side and out along the next.
    auto corner = [&](UIRectCorner which, CGPoint at, CGVector in, CGVector out) {
        auto reach = platform::contains(corners, which) ? radius : 0;
        CGPoint from{at.x - in.dx * reach, at.y - in.dy * reach};
        CGPoint to{at.x + out.dx * reach, at.y + out.dy * reach};
        path.isEmpty() ? path.moveTo(from) : path.addLine(from);
        if (reach > 0) {
            auto rest = reach * (1 - quarterCircle);
            path.addCurve(to, {at.x - in.dx * rest, at.y - in.dy * rest},
                          {at.x + out.dx * rest, at.y + out.dy * rest});
        }
    };
    corner(UIRectCorner::topRight, {rect.maxX(), rect.minY()}, {1, 0}, {0, 1});
    corner(UIRectCorner::bottomRight, {rect.maxX(), rect.maxY()}, {0, 1}, {-1, 0});
    corner(UIRectCorner::bottomLeft, {rect.minX(), rect.maxY()}, {-1, 0}, {0, -1});
    corner(UIRectCorner::topLeft, {rect.minX(), rect.minY()}, {0, -1}, {1, 0});
    path.close();
    return path;
}

CGPoint UIBezierPath::currentPoint() const
{
    CGPoint start, current;
    for (auto& element : elements_) {
        auto count = pointCount(element.kind);
        current = count == 0 ? start : element.points[static_cast<std::size_t>(count - 1)];
        if (element.kind == ElementKind::move)
            start = current;
    }
    return current;
}

CGRect UIBezierPath::bounds() const
{
    if (elements_.empty())
        return CGRect::null();
    auto box = painterPath(*this).boundingRect();
    return CGRect::make(box.x(), box.y(), box.width(), box.height());
}

bool UIBezierPath::contains(CGPoint point, FillRule rule) const
{
    return painterPath(*this, rule).contains(qPoint(point));
}

void UIBezierPath::add(ElementKind kind, CGPoint a, CGPoint b, CGPoint c)
{
    elements_.push_back({kind, {a, b, c}});
}

void UIBezierPath::ensureStarted()
{
    if (elements_.empty())
        moveTo({});
}

void UIBezierPath::moveTo(CGPoint point)
{
    add(ElementKind::move, point);
}

void UIBezierPath::addLine(CGPoint end)
{
    ensureStarted();
    add(ElementKind::line, end);
}

void UIBezierPath::addQuad(CGPoint end, CGPoint control)
{
    ensureStarted();
    add(ElementKind::quad, control, end);
}

void UIBezierPath::addCurve(CGPoint end, CGPoint control1, CGPoint control2)
{
    ensureStarted();
    add(ElementKind::curve, control1, control2, end);
}

void UIBezierPath::addArc(CGPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle,
                          ArcDirection direction)
{
    constexpr auto turn = 2 * std::numbers::pi;
    auto sweep = endAngle - startAngle;
    if (!std::isfinite(sweep) || !std::isfinite(radius))
        return;
    // A sweep of a turn or more is the whole circle; one against the direction goes the other way round.
    if (direction == ArcDirection::clockwise)
        sweep = sweep >= turn ? turn : sweep < 0 ? std::fmod(sweep, turn) + turn : sweep;
    else
        sweep = sweep <= -turn ? -turn : sweep > 0 ? std::fmod(sweep, turn) - turn : sweep;

    auto at = [&](CGFloat angle) {
        return CGPoint{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
    };
    elements_.empty() ? moveTo(at(startAngle)) : addLine(at(startAngle));
    auto count = std::max(1.0, std::ceil(std::abs(sweep) / (turn / 4) - 1e-9));
    auto step = sweep / count;
    auto reach = 4.0 / 3 * std::tan(step / 4) * radius;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        auto from = startAngle + step * i;
        auto to = from + step;
        auto a = at(from);
        auto b = at(to);
        addCurve(b, {a.x - reach * std::sin(from), a.y + reach * std::cos(from)},
                 {b.x + reach * std::sin(to), b.y - reach * std::cos(to)});
    }
}

void UIBezierPath::close()
{
    if (!elements_.empty())
        add(ElementKind::close, {});
}

void UIBezierPath::append(const UIBezierPath& other)
{
    // A copy, since a path may be appended to itself.
    auto added = other.elements_;
    elements_.insert(elements_.end(), added.begin(), added.end());
}

void UIBezierPath::transform(const CGAffineTransform& transform)
{
    for (auto& element : elements_) {
        for (int i = 0; i < pointCount(element.kind); ++i) {
            auto& point = element.points[static_cast<std::size_t>(i)];
            point = transform.apply(point);
        }
    }
}

UIBezierPath UIBezierPath::transformed(const CGAffineTransform& transform) const
{
    auto copy = *this;
    copy.transform(transform);
    return copy;
}

QPainterPath painterPath(const UIBezierPath& path, FillRule rule)
{
    QPainterPath result;
    result.setFillRule(rule == FillRule::nonZero ? Qt::WindingFill : Qt::OddEvenFill);
    for (auto& element : path.elements()) {
        auto& points = element.points;
        switch (element.kind) {
        case UIBezierPath::ElementKind::move:
            result.moveTo(qPoint(points[0]));
            break;
        case UIBezierPath::ElementKind::line:
            result.lineTo(qPoint(points[0]));
            break;
        case UIBezierPath::ElementKind::quad:
            result.quadTo(qPoint(points[0]), qPoint(points[1]));
            break;
        case UIBezierPath::ElementKind::curve:
            result.cubicTo(qPoint(points[0]), qPoint(points[1]), qPoint(points[2]));
            break;
        case UIBezierPath::ElementKind::close:
            result.closeSubpath();
            break;
        }
    }
    return result;
}

} // namespace platform
