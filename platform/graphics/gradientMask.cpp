// SPDX-License-Identifier: MIT
#include "platform/graphics/gradientMask.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"
#include "platform/graphics/GradientRows_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform {

void maskLayer(CGContext& context, const MaskGradient& mask)
{
    auto& backend = context.backend();
    precondition(!backend.layers.empty(), "maskLayer needs a layer that was begun");
    backend.painter(); // all that was drawn is in the picture
    auto& layer = *backend.layers.back();
    if (layer.pixels.isEmpty())
        return;
    GradientRows rows(mask, context.pixelTransform(), layer.pixels);
    for (int y = 0; y < layer.image.height(); ++y)
        multiplyPixels(pixelsOf(layer.image, y), rows.row(y), rows.width());
}

namespace {

// The box around the part of `bounds` whose distance from the origin, along `way`, is in between.
CGRect band(const CGRect& bounds, CGPoint way, CGFloat low, CGFloat high)
{
    auto distance = [&](CGPoint p) { return p.x * way.x + p.y * way.y; };
    std::array<CGPoint, 4> corners{bounds.origin, CGPoint{bounds.maxX(), bounds.minY()},
                                   CGPoint{bounds.maxX(), bounds.maxY()},
                                   CGPoint{bounds.minX(), bounds.maxY()}};
    auto result = CGRect::null();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        auto a = corners[i], b = corners[(i + 1) % corners.size()];
        auto from = distance(a), to = distance(b);
        if (from >= low && from <= high)
            result = result.unionWith({a, {}});
        for (auto limit : {low, high}) {
            if ((from < limit) == (to < limit))
                continue;
            auto part = (limit - from) / (to - from);
            result = result.unionWith({{a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part}, {}});
        }
    }
    return result;
}

} // namespace

CGRect changedArea(const LinearGradientLine& before, const LinearGradientLine& after, CGRect bounds)
{
    auto isSameColor = [](const GradientStop& a, const GradientStop& b) { return a.color == b.color; };
    auto way = before.end - before.start, wayAfter = after.end - after.start;
    auto length = std::hypot(way.x, way.y);
    auto isParallel = way.x * wayAfter.x + way.y * wayAfter.y > 0
        && std::abs(way.x * wayAfter.y - way.y * wayAfter.x)
            <= 1e-9 * length * std::hypot(wayAfter.x, wayAfter.y);
    if (before.stops.empty() || !isParallel || !std::ranges::equal(before.stops, after.stops, isSameColor))
        return bounds;
    CGPoint unit{way.x / length, way.y / length};
    auto reach = [&](const LinearGradientLine& line) {
        auto at = [&](CGFloat part) {
            auto along = line.end - line.start;
            CGPoint place{line.start.x + along.x * part, line.start.y + along.y * part};
            return place.x * unit.x + place.y * unit.y;
        };
        return std::pair{at(line.stops.front().location), at(line.stops.back().location)};
    };
    auto [low, high] = reach(before);
    auto [lowAfter, highAfter] = reach(after);
    // Where both ends look alike, nothing has changed between the two bands.
    auto changed = isSameColor(before.stops.front(), before.stops.back())
        ? band(bounds, unit, low, high).unionWith(band(bounds, unit, lowAfter, highAfter))
        : band(bounds, unit, std::min(low, lowAfter), std::max(high, highAfter));
    return changed.isNull() ? changed : changed.insetBy(-1, -1).intersection(bounds);
}

} // namespace platform
