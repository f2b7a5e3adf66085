// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIColor.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace platform {

class UIImage;
struct CGContextBackend;

enum class LineCap { butt, round, square };
enum class LineJoin { miter, round, bevel };

struct StrokeStyle {
    CGFloat lineWidth = 1;
    LineCap lineCap = LineCap::butt;
    LineJoin lineJoin = LineJoin::miter;
    CGFloat miterLimit = 10;
    std::vector<CGFloat> dash; // lengths in points, painted and skipped in turn; empty for a whole line
    CGFloat dashPhase = 0;
    bool operator==(const StrokeStyle&) const = default;
};

struct GradientStop {
    CGFloat location = 0; // 0...1, ascending
    UIColor color;
    bool operator==(const GradientStop&) const = default;
};

// Where drawing goes: a window's surface or a picture. Coordinates are points under the present transform.
// Edges are antialiased; dynamic colours are resolved in the context's appearance. Valid during the drawing
// call that received it; that call's thread only.
class CGContext {
public:
    explicit CGContext(std::unique_ptr<CGContextBackend> backend);
    CGContext(const CGContext&) = delete;
    CGContext& operator=(const CGContext&) = delete;
    ~CGContext();

    // Pixels per point, before the present transform.
    CGFloat scale() const;
    ColorAppearance appearance() const;
    // From present coordinates to those the context began with.
    CGAffineTransform transform() const;
    // From present coordinates to the surface's pixels. A layer's are those of the surface that it is painted on.
    CGAffineTransform pixelTransform() const;
    // A rectangle, in present coordinates, outside of which nothing can be painted. What does not meet it
    // need not be drawn.
    CGRect clipBounds() const;

    // Appearance, transform and clip. Every save has its restore; CGContextState pairs them.
    void save();
    void restore();
    void setAppearance(ColorAppearance appearance);
    // `transform` maps new coordinates to the present ones.
    void concat(const CGAffineTransform& transform);
    void translate(CGFloat dx, CGFloat dy);
    void clip(const CGRect& rect);
    // Antialiased, unlike the rectangle, whose edges go to the nearest pixels.
    void clip(const UIBezierPath& path, FillRule rule = FillRule::nonZero);

    void fill(const CGRect& rect, const UIColor& color);
    void fill(const UIBezierPath& path, const UIColor& color, FillRule rule = FillRule::nonZero);
    void stroke(const UIBezierPath& path, const UIColor& color, const StrokeStyle& style = {});
    // Stretches the picture over `rect`. A template takes `tint`, or black when there is none.
    void drawImage(const UIImage& image, const CGRect& rect, const std::optional<UIColor>& tint = {});
    // Fills the clip; before the first stop and after the last one their colours go on. `start` equal to
    // `end` paints the last colour.
    void drawLinearGradient(std::span<const GradientStop> stops, CGPoint start, CGPoint end);
    void drawRadialGradient(std::span<const GradientStop> stops, CGPoint center, CGFloat startRadius,
                            CGFloat endRadius);
    // Makes what was painted in `rect` transparent again.
    void clear(const CGRect& rect);

    // What is drawn until the end is first put together, then painted as a whole. `bounds`, in present
    // coordinates, limits it: nothing is kept outside. Layers nest; each is as large as the visible part of
    // its bounds, and one of which nothing is visible costs nothing. Each begin has its end, and saves
    // inside are restored inside.
    void beginTransparencyLayer(const CGRect& bounds, CGFloat alpha);
    void endTransparencyLayer();

    void beginLayer(const CGRect& bounds, CGFloat alpha = 1);
    // Keeps of the layer's content only what `draw` paints opaque: content alpha times mask alpha. `draw`
    // gets a context with the coordinates of beginLayer.
    void maskLayer(const std::function<void(CGContext&)>& draw);
    void endLayer();

    CGContextBackend& backend() { return *backend_; }

private:
    std::unique_ptr<CGContextBackend> backend_;
};

// Saves at the beginning of a scope and restores at its end.
class CGContextState {
public:
    explicit CGContextState(CGContext& context)
        : context_(context)
    {
        context_.save();
    }
    CGContextState(const CGContextState&) = delete;
    CGContextState& operator=(const CGContextState&) = delete;
    ~CGContextState() { context_.restore(); }

private:
    CGContext& context_;
};

} // namespace platform
