// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContextBackend_p.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

void setQuality(QPainter& painter)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                           | QPainter::SmoothPixmapTransform);
}

} // namespace

QColor qColor(const UIColor& color, ColorAppearance appearance)
{
    auto& components = color.components(appearance);
    auto legal = [](double value) { return value > 0 ? static_cast<float>(std::min(value, 1.0)) : 0.0F; };
    return QColor::fromRgbF(legal(components.red), legal(components.green), legal(components.blue),
                            legal(components.alpha));
}

CGContextBackend::CGContextBackend(QPainter& basePainter, ColorAppearance baseAppearance)
    : base(basePainter)
    , baseTransform(basePainter.worldTransform())
    , scale(basePainter.device()->devicePixelRatioF())
    , appearance(baseAppearance)
{
    auto device = base.device();
    clipPixels = QRectF(0, 0, device->width(), device->height());
    if (base.hasClipping()) {
        clipPixels &= toPixels().mapRect(base.clipBoundingRect());
        clipIsRect = base.clipRegion().rectCount() <= 1;
    }
    clipRect = clipPixels.toRect();
    base.save();
    setQuality(base);
}

CGContextBackend::~CGContextBackend()
{
    precondition(saved.empty(),
                 "a drawing context ended with a save that was not restored, or inside a layer");
    if (ground)
        paintGround();
    base.restore();
}

void CGContextBackend::save(bool isLayer)
{
    saved.push_back({appearance, toBase, clipPixels, clipRect, clipIsRect, isLayer});
    innermost().save();
}

void CGContextBackend::restore(bool isLayer)
{
    precondition(!saved.empty() && saved.back().isLayer == isLayer,
                 "a drawing state was restored that was not saved, or was saved outside of the layer");
    auto& state = saved.back();
    appearance = state.appearance;
    toBase = state.toBase;
    clipPixels = state.clipPixels;
    clipRect = state.clipRect;
    clipIsRect = state.clipIsRect;
    saved.pop_back();
    innermost().restore();
}

void CGContextBackend::applyTransform()
{
    auto transform = toBase * baseTransform;
    if (!layers.empty()) {
        auto origin = layers.back()->pixels.topLeft();
        transform *= QTransform::fromTranslate(-origin.x() / scale, -origin.y() / scale);
    }
    innermost().setWorldTransform(transform);
}

void CGContextBackend::clipTo(const QRectF& bounds, bool isRect)
{
    auto map = toPixels();
    auto pixels = map.mapRect(bounds);
    clipPixels &= pixels;
    clipRect &= pixels.toRect(); // each by itself
    clipIsRect = clipIsRect && isRect && map.type() <= QTransform::TxScale;
}

namespace {

constexpr int smallestGround = 4096; // pixels; less is painted faster than it is thought about

// The pixels between two edges, one of which may lie beyond the clip; nothing where an edge cuts a pixel in two.
std::optional<std::pair<int, int>> wholePixels(double low, double high, int clipLow, int clipHigh)
{
    constexpr double rounding = 1e-4;
    auto isWhole = [](double edge) { return std::abs(edge - std::round(edge)) < rounding; };
    if ((low > clipLow && !isWhole(low)) || (high < clipHigh && !isWhole(high)))
        return std::nullopt;
    return std::pair{int(std::round(std::max(low, double(clipLow)))),
                     int(std::round(std::min(high, double(clipHigh))))};
}

// `color`, premultiplied, over an opaque one, as the library blends.
QRgb blended(QRgb color, QRgb below)
{
    auto rest = 255 - qAlpha(color);
    auto mix = [&](int above, int under) {
        auto part = under * rest;
        return above + ((part + (part >> 8) + 0x80) >> 8);
    };
    return qRgb(mix(qRed(color), qRed(below)), mix(qGreen(color), qGreen(below)),
                mix(qBlue(color), qBlue(below)));
}

} // namespace

bool CGContextBackend::takeAsGround(const QRectF& rect, const QColor& color)
{
    auto map = toPixels();
    if (!clipIsRect || map.type() > QTransform::TxScale || clipPixels.isEmpty())
        return false;
    auto place = map.mapRect(rect);
    auto columns =
        wholePixels(place.left(), place.right(), clipRect.left(), clipRect.left() + clipRect.width());
    auto rows = wholePixels(place.top(), place.bottom(), clipRect.top(), clipRect.top() + clipRect.height());
    if (!columns || !rows)
        return false;
    QRect pixels(columns->first, rows->first, columns->second - columns->first, rows->second - rows->first);
    if (pixels.isEmpty())
        return true;
    if (color.alpha() == 255) {
        if (qint64(pixels.width()) * pixels.height() < smallestGround)
            return false;
        if (ground && !pixels.contains(ground->pixels))
            paintGround();
        ground = {pixels, color.rgba(), {}};
        return true;
    }
    if (!ground || ground->pixels != pixels || !ground->done.empty())
        return false;
    ground->color = blended(qPremultiply(color.rgba()), ground->color);
    return true;
}

void CGContextBackend::paintGround()
{
    auto [pixels, color, done] = *std::exchange(ground, std::nullopt);
    QRegion rest(pixels);
    for (const auto& rect : done)
        rest -= rect;
    auto& target = innermost();
    auto origin = layers.empty() ? QPoint() : layers.back()->pixels.topLeft();
    target.save();
    target.setWorldTransform({});
    target.setClipping(false);
    target.setRenderHint(QPainter::Antialiasing, false);
    for (const auto& rect : rest)
        target.fillRect(QRectF(QPointF(rect.topLeft() - origin) / scale, QSizeF(rect.size()) / scale),
                        QColor::fromRgb(color));
    target.restore();
}

std::optional<QRgb> CGContextBackend::takeGroundOf(QRect pixels)
{
    if (!ground)
        return std::nullopt;
    auto isNew = [&](const QRect& rect) { return !rect.intersects(pixels); };
    if (!ground->pixels.contains(pixels) || !std::ranges::all_of(ground->done, isNew)) {
        paintGround();
        return std::nullopt;
    }
    ground->done.push_back(pixels);
    return ground->color;
}

std::optional<CGContextBackend::Surface> CGContextBackend::surface()
{
    if (!clipIsRect)
        return std::nullopt;
    if (!layers.empty()) {
        auto& layer = *layers.back();
        return Surface{&layer.image, layer.pixels.topLeft(), clipRect & layer.pixels};
    }
    if (base.device()->devType() != QInternal::Image)
        return std::nullopt;
    auto* image = static_cast<const QImage*>(base.device());
    if (image->format() != QImage::Format_RGB32 && image->format() != QImage::Format_ARGB32_Premultiplied)
        return std::nullopt;
    return Surface{image, {}, clipRect & image->rect()};
}

void CGContextBackend::pushLayer(const QRectF& bounds, double alpha)
{
    if (ground)
        paintGround();
    save(true);
    clipTo(bounds);
    auto layer = std::make_unique<Layer>();
    layer->alpha = alpha;
    if (alpha > 0 && !clipPixels.isEmpty())
        layer->pixels = clipPixels.toAlignedRect();
    else {
        clipPixels = {};
        clipRect = {};
    }
    // A layer of which nothing is seen still takes drawing calls: one pixel, with everything clipped.
    auto size = layer->pixels.isEmpty() ? QSize(1, 1) : layer->pixels.size();
    layer->image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    precondition(!layer->image.isNull(), "no memory for a drawing layer");
    layer->image.fill(Qt::transparent);
    layer->image.setDevicePixelRatio(scale);
    layer->painter = std::make_unique<QPainter>(&layer->image);
    setQuality(*layer->painter);
    auto isVisible = !layer->pixels.isEmpty();
    layers.push_back(std::move(layer));
    applyTransform();
    if (isVisible)
        painter().setClipRect(bounds);
    else
        painter().setClipRegion(QRegion());
}

std::unique_ptr<CGContextBackend::Layer> CGContextBackend::popLayer()
{
    precondition(!layers.empty() && !saved.empty() && saved.back().isLayer,
                 "a layer ended that was not begun, or before a save inside it was restored");
    if (ground)
        paintGround();
    layers.back()->painter.reset();
    auto layer = std::move(layers.back());
    layers.pop_back();
    restore(true);
    return layer;
}

void CGContextBackend::composite(const Layer& layer, QPainter::CompositionMode mode)
{
    if (layer.pixels.isEmpty())
        return;
    auto& target = painter();
    auto origin = layers.empty() ? QPoint() : layers.back()->pixels.topLeft();
    auto at = QPointF(layer.pixels.topLeft() - origin) / scale;
    target.save();
    target.setWorldTransform({});
    // A mask holds for all of the content, whatever the content was clipped to last.
    if (mode == QPainter::CompositionMode_DestinationIn)
        target.setClipping(false);
    target.setCompositionMode(mode);
    target.setOpacity(std::min(layer.alpha, 1.0));
    target.setRenderHint(QPainter::SmoothPixmapTransform, false);
    target.drawImage(at, layer.image);
    target.restore();
}

} // namespace platform
