// SPDX-License-Identifier: MIT
#include "platform/graphics/shadow.h"

#include "platform/graphics/BlurredAlpha_p.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>

namespace platform {

namespace {

// A blur of so many pixels looks the same when it is computed on fewer and stretched.
constexpr CGFloat widestDeviation = 4; // pixels
constexpr std::size_t keptPictures = 64;

// Pixels per point at which a blur is computed.
CGFloat blurScale(const CGContext& context, CGFloat deviation)
{
    auto map = context.transform();
    auto scale = context.scale() * std::sqrt(std::abs(map.determinant()));
    return deviation * scale > widestDeviation ? widestDeviation / deviation : scale;
}

// The rectangle rounded outwards to pixels: those of the surface, or coarser ones that lie at the same places whatever part
// of the shadow is painted.
CGRect onGrid(const CGRect& rect, const CGContext& context, CGFloat scale)
{
    auto map = context.pixelTransform();
    if (map.b != 0 || map.c != 0 || map.a != scale || map.d != scale)
        map = CGAffineTransform::scale(scale, scale);
    constexpr CGFloat rounding = 1e-6;
    auto place = map.apply(rect);
    auto left = std::floor(place.minX() + rounding), top = std::floor(place.minY() + rounding);
    auto right = std::ceil(place.maxX() - rounding), bottom = std::ceil(place.maxY() - rounding);
    return map.inverted().apply(CGRect::make(left, top, right - left, bottom - top));
}

bool isUsable(CGFloat deviation, const CGRect& rect)
{
    return deviation >= 0 && std::isfinite(deviation) && !rect.isEmpty() && std::isfinite(rect.width())
        && std::isfinite(rect.height());
}

using Key = std::tuple<double, double, double, double, double, unsigned, double, double, double, double>;

// The blurred picture of a small rectangle, kept from the last time.
UIImage rectPicture(const CGContext& context, const RectShadow& shadow, CGSize size, CGFloat scale)
{
    static auto& pictures = *new std::map<Key, UIImage>; // never destroyed: the painting library may go first
    auto color = shadow.color.components(context.appearance());
    Key key{size.width,       size.height, shadow.cornerRadius,
            shadow.deviation, scale,       static_cast<unsigned>(shadow.corners),
            color.red,        color.green, color.blue,
            color.alpha};
    if (auto found = pictures.find(key); found != pictures.end())
        return found->second;
    auto reach = shadowReach(shadow.deviation);
    CGSize whole{(size.width + 2 * reach) * scale, (size.height + 2 * reach) * scale};
    auto drawn = makeImage(whole, 1, [&](CGContext& inner) {
        inner.concat(CGAffineTransform::scale(scale, scale));
        inner.fill(
            UIBezierPath::roundedRect(CGRect{{reach, reach}, size}, shadow.cornerRadius, shadow.corners),
            UIColor::black());
    });
    if (!drawn)
        return {};
    auto picture = imageFrom(blurredAlpha(qImage(*drawn), shadow.deviation * scale, color), scale);
    if (pictures.size() >= keptPictures)
        pictures.clear();
    pictures.emplace(key, picture);
    return picture;
}

} // namespace

void drawShadow(CGContext& context, const RectShadow& shadow)
{
    auto reach = shadowReach(shadow.deviation);
    auto outer = shadow.rect.insetBy(-reach, -reach);
    if (!isUsable(shadow.deviation, shadow.rect) || !outer.intersects(context.clipBounds()))
        return;
    auto scale = blurScale(context, shadow.deviation);
    // Between its corners an edge looks the same everywhere: a strip of it is stretched. So the picture's size depends on
    // the blur, and not on the rectangle, unless that is smaller.
    auto corner = std::ceil(
        std::min(shadow.cornerRadius, std::min(shadow.rect.width(), shadow.rect.height()) / 2) + reach);
    CGSize small{std::min(shadow.rect.width(), 2 * corner + 2),
                 std::min(shadow.rect.height(), 2 * corner + 2)};
    auto picture = rectPicture(context, shadow, small, scale);
    if (picture.isEmpty())
        return;
    auto sourceX = small.width / 2 + reach, sourceY = small.height / 2 + reach; // the strip's middle
    // Pieces meet on whole pixels, or a seam would show.
    auto map = context.transform();
    auto whole = [&](CGFloat place, CGFloat factor, CGFloat shift) {
        auto pixels = context.scale();
        if (map.b != 0 || map.c != 0)
            return place;
        return (std::round((place * factor + shift) * pixels) / pixels - shift) / factor;
    };
    std::array xs{outer.minX(), whole(outer.minX() + sourceX, map.a, map.tx),
                  whole(outer.maxX() - sourceX, map.a, map.tx), outer.maxX()};
    std::array ys{outer.minY(), whole(outer.minY() + sourceY, map.d, map.ty),
                  whole(outer.maxY() - sourceY, map.d, map.ty), outer.maxY()};
    CGSize size{small.width + 2 * reach, small.height + 2 * reach};
    auto sourceOf = [](std::size_t index, CGFloat middle, CGFloat length) {
        return index == 0 ? std::pair{0.0, middle}
            : index == 2  ? std::pair{length - middle, middle}
                          : std::pair{middle - 0.5, 1.0};
    };
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            auto piece =
                CGRect::make(xs[column], ys[row], xs[column + 1] - xs[column], ys[row + 1] - ys[row]);
            if (piece.isEmpty() || shadow.hidden.contains(piece))
                continue;
            auto [x, width] = sourceOf(column, sourceX, size.width);
            auto [y, height] = sourceOf(row, sourceY, size.height);
            drawPart(context, picture, CGRect::make(x, y, width, height), piece);
        }
    }
}

void drawShadow(CGContext& context, const OutlineShadow& shadow, const std::function<void(CGContext&)>& draw)
{
    auto reach = shadowReach(shadow.deviation);
    if (!isUsable(shadow.deviation, shadow.bounds))
        return;
    // What lies further than the blur reaches from what is painted anew does not matter, but for the edge of a picture that
    // is turned, which is soft.
    auto clip = context.clipBounds();
    auto scale = blurScale(context, shadow.deviation);
    auto margin = reach + 2 / scale;
    auto area = shadow.bounds.intersection(clip.insetBy(-margin, -margin)).insetBy(-reach, -reach);
    if (clip.isEmpty() || area.isEmpty())
        return;
    area = onGrid(area, context, scale);
    auto picture = makeImage(
        {area.width() * scale, area.height() * scale}, 1,
        [&](CGContext& inner) {
            inner.concat(CGAffineTransform::scale(scale, scale));
            inner.translate(-area.minX(), -area.minY());
            draw(inner);
        },
        context.appearance());
    if (!picture)
        return; // larger than any screen
    auto blurred = imageFrom(blurredAlpha(qImage(*picture), shadow.deviation * scale,
                                          shadow.color.components(context.appearance())),
                             scale);
    context.drawImage(blurred, CGRect{area.origin, blurred.size()});
}

} // namespace platform
