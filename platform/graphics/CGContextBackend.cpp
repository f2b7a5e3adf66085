// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContextBackend_p.h"

#include "platform/foundation/Precondition.h"

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
    if (base.hasClipping())
        clipPixels &= toPixels().mapRect(base.clipBoundingRect());
    base.save();
    setQuality(base);
}

CGContextBackend::~CGContextBackend()
{
    precondition(saved.empty(),
                 "a drawing context ended with a save that was not restored, or inside a layer");
    base.restore();
}

void CGContextBackend::save(bool isLayer)
{
    saved.push_back({appearance, toBase, clipPixels, isLayer});
    painter().save();
}

void CGContextBackend::restore(bool isLayer)
{
    precondition(!saved.empty() && saved.back().isLayer == isLayer,
                 "a drawing state was restored that was not saved, or was saved outside of the layer");
    auto& state = saved.back();
    appearance = state.appearance;
    toBase = state.toBase;
    clipPixels = state.clipPixels;
    saved.pop_back();
    painter().restore();
}

void CGContextBackend::applyTransform()
{
    auto transform = toBase * baseTransform;
    if (!layers.empty()) {
        auto origin = layers.back()->pixels.topLeft();
        transform *= QTransform::fromTranslate(-origin.x() / scale, -origin.y() / scale);
    }
    painter().setWorldTransform(transform);
}

void CGContextBackend::clipTo(const QRectF& rect)
{
    clipPixels &= toPixels().mapRect(rect);
}

void CGContextBackend::pushLayer(const QRectF& bounds, double alpha)
{
    save(true);
    clipTo(bounds);
    auto layer = std::make_unique<Layer>();
    layer->alpha = alpha;
    if (alpha > 0 && !clipPixels.isEmpty())
        layer->pixels = clipPixels.toAlignedRect();
    else
        clipPixels = {};
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
