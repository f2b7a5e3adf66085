// SPDX-License-Identifier: MIT
#include "platform/graphics/SymbolImage.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/SymbolPictures_p.h"
#include "platform/graphics/UIImage_p.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// A symbol is a little higher than a capital, as a round letter is.
constexpr CGFloat heightPerPoint = 1.2;
constexpr int largestSide = 2048; // pixels; what is larger is stretched

CGFloat factorOf(SymbolScale scale)
{
    return scale == SymbolScale::small ? 0.78 : scale == SymbolScale::large ? 1.28 : 1;
}

int pixels(CGFloat length)
{
    return static_cast<int>(std::clamp(std::ceil(length - 1e-6), 1.0, double(largestSide)));
}

// Where a place in the context's coordinates comes to lie on a whole pixel.
CGPoint onWholePixel(const CGContext& context, CGPoint place)
{
    auto map = context.transform();
    auto scale = context.scale();
    auto device = map.apply(place);
    return map.inverted().apply(
        CGPoint{std::round(device.x * scale) / scale, std::round(device.y * scale) / scale});
}

} // namespace

bool symbolExists(std::string_view name)
{
    return symbolAspect(name) > 0;
}

CGSize symbolSize(std::string_view name, const SymbolConfiguration& configuration)
{
    auto aspect = symbolAspect(name);
    auto height = configuration.pointSize * heightPerPoint * factorOf(configuration.scale);
    if (!(aspect > 0 && height > 0 && std::isfinite(height)))
        return {};
    return {height * aspect, height};
}

CGFloat symbolBaseline(CGSize symbolSize, const UIFont& font)
{
    return (symbolSize.height + font.capHeight()) / 2;
}

void drawSymbol(CGContext& context, std::string_view name, const CGRect& rect, const UIColor& color,
                const SymbolDrawing& drawing)
{
    if (rect.isEmpty() || rect.intersection(context.clipBounds()).isEmpty())
        return;
    auto map = context.transform();
    auto scaleX = std::hypot(map.a, map.b) * context.scale();
    auto scaleY = std::hypot(map.c, map.d) * context.scale();
    if (!(scaleX > 0 && scaleY > 0 && std::isfinite(scaleX * scaleY)))
        return;
    SymbolWish wish{.weight = drawing.weight,
                    .direction = drawing.direction,
                    .width = std::min(rect.width() * scaleX, double(largestSide)),
                    .height = std::min(rect.height() * scaleY, double(largestSide)),
                    .color = color.components(context.appearance())};
    auto picture = symbolPicture(name, wish);
    if (picture.isEmpty())
        return;
    auto isUpright = map.b == 0 && map.c == 0;
    auto origin = drawing.isSharp && isUpright ? onWholePixel(context, rect.origin) : rect.origin;
    // The picture has whole pixels, so it is a little larger than the symbol.
    context.drawImage(picture,
                      CGRect{origin,
                             {rect.width() * picture.pixelWidth() / wish.width,
                              rect.height() * picture.pixelHeight() / wish.height}});
}

UIImage symbolImage(std::string_view name, const SymbolConfiguration& configuration, CGFloat displayScale,
                    SymbolDirection direction)
{
    auto size = symbolSize(name, configuration);
    if (size.width <= 0 || !(displayScale > 0))
        return {};
    auto picture = symbolPicture(name,
                                 {.weight = configuration.weight,
                                  .direction = direction,
                                  .width = double(pixels(size.width * displayScale)),
                                  .height = double(pixels(size.height * displayScale)),
                                  .color = {0, 0, 0, 1}});
    return UIImage(picture.bitmap(), displayScale).asSymbol();
}

} // namespace platform
