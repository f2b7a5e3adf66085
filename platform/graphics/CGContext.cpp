// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContext.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"
#include "platform/graphics/UIBezierPath_p.h"
#include "platform/graphics/UIImage_p.h"

#include <QtGui/QLinearGradient>

namespace platform {

namespace {

QRectF qRect(const CGRect& rect)
{
    return rect.isNull() ? QRectF() : QRectF(rect.minX(), rect.minY(), rect.width(), rect.height());
}

QTransform qTransform(const CGAffineTransform& t)
{
    return {t.a, t.b, t.c, t.d, t.tx, t.ty};
}

QPen qPen(const QBrush& brush, const StrokeStyle& style)
{
    constexpr Qt::PenCapStyle caps[]{Qt::FlatCap, Qt::RoundCap, Qt::SquareCap};
    constexpr Qt::PenJoinStyle joins[]{Qt::SvgMiterJoin, Qt::RoundJoin, Qt::BevelJoin};
    QPen pen(brush, style.lineWidth, Qt::SolidLine, caps[static_cast<int>(style.lineCap)],
             joins[static_cast<int>(style.lineJoin)]);
    pen.setMiterLimit(style.miterLimit);
    if (!style.dash.empty()) {
        // The library measures dashes in line widths and wants an even number of them.
        QList<qreal> pattern;
        for (int round = 0; round < (style.dash.size() % 2 ? 2 : 1); ++round) {
            for (auto length : style.dash)
                pattern.append(std::max(length, 0.0) / style.lineWidth);
        }
        pen.setDashPattern(pattern);
        pen.setDashOffset(style.dashPhase / style.lineWidth);
    }
    return pen;
}

void setStops(QGradient& gradient, std::span<const GradientStop> stops, ColorAppearance appearance)
{
    for (auto& stop : stops)
        gradient.setColorAt(std::clamp(stop.location, 0.0, 1.0), qColor(stop.color, appearance));
}

QImage tinted(QImage image, const QColor& color)
{
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

CGContext::CGContext(std::unique_ptr<CGContextBackend> backend)
    : backend_(std::move(backend))
{
}

CGContext::~CGContext() = default;

CGFloat CGContext::scale() const
{
    return backend_->scale;
}

ColorAppearance CGContext::appearance() const
{
    return backend_->appearance;
}

CGAffineTransform CGContext::transform() const
{
    auto& t = backend_->toBase;
    return {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()};
}

CGAffineTransform CGContext::pixelTransform() const
{
    auto t = backend_->toPixels();
    return {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()};
}

CGRect CGContext::clipBounds() const
{
    auto isInvertible = false;
    auto inverse = backend_->toPixels().inverted(&isInvertible);
    if (!isInvertible || backend_->clipPixels.isEmpty())
        return {};
    auto rect = inverse.mapRect(backend_->clipPixels);
    return CGRect::make(rect.x(), rect.y(), rect.width(), rect.height());
}

void CGContext::save()
{
    backend_->save(false);
}

void CGContext::restore()
{
    backend_->restore(false);
}

void CGContext::setAppearance(ColorAppearance appearance)
{
    backend_->appearance = appearance;
}

void CGContext::concat(const CGAffineTransform& transform)
{
    backend_->toBase = qTransform(transform) * backend_->toBase;
    backend_->applyTransform();
}

void CGContext::translate(CGFloat dx, CGFloat dy)
{
    concat(CGAffineTransform::translation(dx, dy));
}

void CGContext::clip(const CGRect& rect)
{
    // An empty rectangle would clip nothing: the painter takes it for none.
    if (rect.isEmpty()) {
        backend_->clipPixels = {};
        backend_->clipRect = {};
        backend_->innermost().setClipRegion(QRegion());
        return;
    }
    backend_->clipTo(qRect(rect));
    backend_->innermost().setClipRect(qRect(rect), Qt::IntersectClip);
}

void CGContext::clip(const UIBezierPath& path, FillRule rule)
{
    backend_->clipTo(qRect(path.bounds()), false);
    backend_->innermost().setClipPath(painterPath(path, rule), Qt::IntersectClip);
}

void CGContext::fill(const CGRect& rect, const UIColor& color)
{
    if (rect.isEmpty())
        return;
    // The library fills with a plain colour faster.
    if (color.patternImage())
        return backend_->painter().fillRect(qRect(rect), qBrush(color, backend_->appearance));
    auto plain = qColor(color, backend_->appearance);
    if (!backend_->takeAsGround(qRect(rect), plain))
        backend_->painter().fillRect(qRect(rect), plain);
}

void CGContext::fill(const UIBezierPath& path, const UIColor& color, FillRule rule)
{
    backend_->painter().fillPath(painterPath(path, rule), qBrush(color, backend_->appearance));
}

void CGContext::stroke(const UIBezierPath& path, const UIColor& color, const StrokeStyle& style)
{
    // A width of zero would be the library's hairline.
    if (style.lineWidth > 0)
        backend_->painter().strokePath(painterPath(path), qPen(qBrush(color, backend_->appearance), style));
}

namespace {

// Whether each pixel of a picture of that size falls onto one of the device. `place`: where the picture goes there.
bool isPixelOnPixel(const QTransform& map, const QRectF& place, QSize size)
{
    constexpr double rounding = 1e-4;
    auto isWhole = [](double edge) { return std::abs(edge - std::round(edge)) < rounding; };
    return map.type() <= QTransform::TxScale && map.m11() > 0 && map.m22() > 0 && isWhole(place.left())
        && isWhole(place.top()) && std::abs(place.width() - size.width()) < rounding
        && std::abs(place.height() - size.height()) < rounding;
}

} // namespace

void CGContext::drawImage(const UIImage& image, const CGRect& rect, const std::optional<UIColor>& tint)
{
    if (image.isEmpty() || rect.isEmpty() || rect.intersection(clipBounds()).isEmpty())
        return;
    auto pixels = qImage(image);
    // The painter looks at four pixels only, so much smaller is done by averaging first.
    auto map = backend_->toPixels();
    auto place = map.mapRect(qRect(rect));
    if (place.width() * 2 <= pixels.width() && place.height() * 2 <= pixels.height())
        pixels = pixels.scaled(place.size().toSize().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                               Qt::SmoothTransformation);
    if (image.isTemplate())
        pixels = tinted(std::move(pixels), qColor(tint.value_or(UIColor::black()), backend_->appearance));
    auto& painter = backend_->painter();
    auto isCopied = isPixelOnPixel(map, place, pixels.size());
    // The painter copies only where it need not smooth; else it hands the rows to threads of its own and waits for them.
    const auto hints = painter.renderHints();
    if (isCopied)
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
    painter.drawImage(qRect(rect), pixels);
    if (isCopied)
        painter.setRenderHints(hints);
}

void CGContext::drawLinearGradient(std::span<const GradientStop> stops, CGPoint start, CGPoint end)
{
    if (stops.empty())
        return;
    if (start == end)
        return fill(clipBounds(), stops.back().color);
    QLinearGradient gradient(start.x, start.y, end.x, end.y);
    setStops(gradient, stops, backend_->appearance);
    backend_->painter().fillRect(qRect(clipBounds()), gradient);
}

void CGContext::drawRadialGradient(std::span<const GradientStop> stops, CGPoint center, CGFloat startRadius,
                                   CGFloat endRadius)
{
    if (stops.empty())
        return;
    if (!(endRadius > startRadius) || startRadius < 0)
        return fill(clipBounds(), stops.back().color);
    QRadialGradient gradient(QPointF(center.x, center.y), endRadius, QPointF(center.x, center.y),
                             startRadius);
    setStops(gradient, stops, backend_->appearance);
    backend_->painter().fillRect(qRect(clipBounds()), gradient);
}

void CGContext::clear(const CGRect& rect)
{
    if (rect.isEmpty())
        return;
    auto& painter = backend_->painter();
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(qRect(rect), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void CGContext::beginTransparencyLayer(const CGRect& bounds, CGFloat alpha)
{
    beginLayer(bounds, alpha);
}

void CGContext::endTransparencyLayer()
{
    endLayer();
}

void CGContext::beginLayer(const CGRect& bounds, CGFloat alpha)
{
    backend_->pushLayer(qRect(bounds), alpha);
}

void CGContext::maskLayer(const std::function<void(CGContext&)>& draw)
{
    precondition(!backend_->layers.empty(), "maskLayer needs a layer that was begun");
    precondition(backend_->saved.back().isLayer, "a save inside the layer was not restored before maskLayer");
    if (backend_->layers.back()->pixels.isEmpty())
        return;
    // The mask is drawn where the layer began: what was set up for the content is put aside.
    auto content = CGContextBackend::Saved{backend_->appearance, backend_->toBase,     backend_->clipPixels,
                                           backend_->clipRect,   backend_->clipIsRect, true};
    auto area = QRectF(backend_->layers.back()->pixels);
    backend_->toBase = backend_->saved.back().toBase;
    backend_->clipPixels = area;
    backend_->clipRect = area.toRect();
    backend_->clipIsRect = true;
    backend_->pushLayer(backend_->toPixels().inverted().mapRect(area), 1);
    draw(*this);
    auto mask = backend_->popLayer();
    backend_->composite(*mask, QPainter::CompositionMode_DestinationIn);
    backend_->appearance = content.appearance;
    backend_->toBase = content.toBase;
    backend_->clipPixels = content.clipPixels;
    backend_->clipRect = content.clipRect;
    backend_->clipIsRect = content.clipIsRect;
    backend_->applyTransform();
}

void CGContext::endLayer()
{
    auto layer = backend_->popLayer();
    backend_->composite(*layer, QPainter::CompositionMode_SourceOver);
}

CGContext contextOver(QPainter& painter, ColorAppearance appearance)
{
    return CGContext(std::make_unique<CGContextBackend>(painter, appearance));
}

QPainter& painterOf(CGContext& context)
{
    return context.backend().painter();
}

} // namespace platform
