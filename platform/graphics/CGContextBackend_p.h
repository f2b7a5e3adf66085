// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext_p.h"

#include <QtCore/QRectF>
#include <QtGui/QBrush>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <optional>

namespace platform {

QColor qColor(const UIColor& color, ColorAppearance appearance);
// The same for areas, which a pattern tiles.
QBrush qBrush(const UIColor& color, ColorAppearance appearance);

// Three coordinate systems: the caller's (points under the present transform), the base's (points of the
// device that the context began with) and pixels of that device. A layer is a piece of those pixels.
struct CGContextBackend {
    struct Layer {
        QImage image;
        QRect pixels; // where it belongs; empty when nothing of it is visible
        double alpha = 1;
        std::unique_ptr<QPainter> painter;
    };
    // What save() keeps; a layer saves as well.
    struct Saved {
        ColorAppearance appearance;
        QTransform toBase;
        QRectF clipPixels;
        QRect clipRect;
        bool clipIsRect = true;
        bool isLayer = false;
    };
    // An opaque ground that is not painted yet: what comes next often covers all of it, or only tints it.
    struct Ground {
        QRect pixels;
        QRgb color = 0;
        std::vector<QRect> done; // painted with what comes next; they do not overlap
    };

    CGContextBackend(QPainter& basePainter, ColorAppearance baseAppearance);
    ~CGContextBackend();

    // The painter of the innermost layer, for painting: what waits is painted first.
    QPainter& painter()
    {
        if (ground)
            paintGround();
        return innermost();
    }
    // The same, for its settings.
    QPainter& innermost() { return layers.empty() ? base : *layers.back()->painter; }
    QTransform toPixels() const { return toBase * baseTransform * QTransform::fromScale(scale, scale); }
    void save(bool isLayer);
    void restore(bool isLayer);
    // Hands the present transform to the painter.
    void applyTransform();
    // `isRect`: to the rectangle, not to something inside of it.
    void clipTo(const QRectF& bounds, bool isRect = true);
    // Takes care of a fill that the next one may make needless. False: nothing is done.
    bool takeAsGround(const QRectF& rect, const QColor& color);
    void paintGround();
    // For painting these pixels whole: the colour of the ground that waits behind them, which then is painted no more. None:
    // there is none that waits.
    std::optional<QRgb> takeGroundOf(QRect pixels);
    // Where the clip is a rectangle of pixels, and can be written into: that, and the picture that they are in.
    struct Surface {
        const QImage* image;
        QPoint origin; // of its first pixel, on the device
        QRect clip;
    };
    std::optional<Surface> surface();
    void pushLayer(const QRectF& bounds, double alpha);
    std::unique_ptr<Layer> popLayer();
    void composite(const Layer& layer, QPainter::CompositionMode mode);

    QPainter& base;
    const QTransform baseTransform; // the painter's own, in points
    double scale = 1;
    ColorAppearance appearance;
    QTransform toBase; // caller's coordinates to those the context began with
    QRectF clipPixels;
    QRect clipRect;                             // the same as the library rounds it
    bool clipIsRect = true;                     // and nothing but that
    std::optional<Ground> ground;               // of the innermost layer
    std::vector<std::unique_ptr<Layer>> layers; // a painter holds its image by address
    std::vector<Saved> saved;
};

} // namespace platform
