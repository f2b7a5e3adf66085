// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewPainter.h"

#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/OutlineMask.h"
#include "platform/uikit/SubviewBounds.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/opaqueFrame.h"
#include "platform/uikit/shadowBounds.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace platform {

bool ViewPainter::isPlain(const UIView& view)
{
    return !view.isHidden_ && !view.mask_ && !view.shadow_ && !view.clipsToBounds_
        && view.presentationAlpha() == 1 && !view.presentationBackgroundColor();
}

void ViewPainter::paint(UIView& view, CGRect dirty)
{
    CGContextState state(context_);
    // Of a pixel in part nothing can be painted anew.
    auto whole = wholePixels(dirty, context_);
    context_.clip(whole);
    paintGroup(view, whole);
}

void ViewPainter::paintInSuperview(UIView& view, CGRect dirty)
{
    if (view.isHidden_)
        return;
    auto map = view.mapToSuperview();
    if (map.determinant() == 0)
        return; // seen from its edge
    auto ownDirty = map.inverted().apply(dirty);
    if (view.clipsToBounds_ && !view.visualBounds().intersects(ownDirty))
        return;
    CGContextState state(context_);
    context_.concat(map);
    paintGroup(view, ownDirty);
}

// Alpha and mask count for the view with all it holds, put together first.
void ViewPainter::paintGroup(UIView& view, CGRect dirty)
{
    auto alpha = view.presentationAlpha();
    if (view.isHidden_ || alpha == 0 || dirty.isEmpty())
        return;
    if (context_.appearance() != view.traits_->colorAppearance())
        context_.setAppearance(view.traits_->colorAppearance());
    if (alpha == 1 && !view.mask_) {
        paintShadow(view, dirty);
        paintContent(view, dirty);
    } else if (auto pieces = alpha == 1 ? piecesOfMask(*view.mask_, dirty) : std::nullopt) {
        for (const auto& piece : pieces->inside) {
            CGContextState state(context_);
            context_.clip(piece);
            paintShadow(view, piece);
            paintContent(view, piece);
        }
        for (const auto& piece : pieces->edge)
            paintLayer(view, piece, alpha);
    } else {
        paintLayer(view, dirty, alpha);
    }
}

void ViewPainter::paintLayer(UIView& view, CGRect dirty, CGFloat alpha)
{
    auto all = view.visualBounds();
    if (view.mask_)
        all = all.intersection(view.mask_->mapToSuperview().apply(view.mask_->visualBounds()));
    auto bounds = all.intersection(dirty);
    if (bounds.isEmpty())
        return;
    auto gradient = view.mask_ ? gradientOver(*view.mask_, bounds) : std::nullopt;
    if (gradient && gradient->covers(all) && paintKept(view, all, bounds, *gradient, alpha))
        return;
    context_.beginLayer(bounds, alpha);
    paintShadow(view, bounds);
    paintContent(view, bounds);
    if (gradient)
        maskLayer(context_, gradient->gradient);
    else if (view.mask_)
        context_.maskLayer(
            [&](CGContext& context) { ViewPainter(context).paintInSuperview(*view.mask_, bounds); });
    context_.endLayer();
}

// A mask that is a round rectangle matters at its edge only.
std::optional<ShapePieces> ViewPainter::piecesOfMask(UIView& mask, CGRect dirty) const
{
    auto* outline = dynamic_cast<OutlineMask*>(&mask);
    if (!outline || !isPlain(mask) || !mask.subviews_.empty() || !mask.presentationTransform().isIdentity())
        return std::nullopt;
    auto shape = roundedRectOf(outline->outlineNow());
    auto bounds = mask.presentationBounds();
    if (!shape || !bounds.contains(shape->rect))
        return std::nullopt;
    shape->rect = mask.mapToSuperview().apply(shape->rect);
    return piecesOf(*shape, dirty, context_);
}

// Where all that the mask shows in the rectangle is one gradient, there is no need to paint it by itself first.
std::optional<ViewPainter::Gradient> ViewPainter::gradientOver(UIView& mask, CGRect area) const
{
    auto [gradient, view] = gradientOf(mask);
    if (!gradient)
        return std::nullopt;
    Gradient result{gradient->maskedPicture(), {}, view->presentationBounds()};
    auto& map = result.gradient.toContext;
    for (auto* inner = view;; inner = inner->superview_) {
        if (!isPlain(*inner))
            return std::nullopt;
        map = map.concatenating(inner->mapToSuperview());
        if (inner == &mask)
            break;
    }
    if (map.determinant() == 0 || !result.covers(area))
        return std::nullopt;
    result.gradient.line = gradient->gradientNow();
    result.gradient.appearance = view->traits_->colorAppearance();
    return result;
}

bool ViewPainter::Gradient::covers(CGRect area) const
{
    constexpr CGFloat rounding = 0.01;
    return bounds.contains(gradient.toContext.inverted().apply(area).insetBy(rounding, rounding));
}

// The content as it was a few frames ago, if nothing has changed since.
bool ViewPainter::paintKept(UIView& view, CGRect area, CGRect dirty, const Gradient& gradient, CGFloat alpha)
{
    // Changes out of a window are not told, and while all of it is to be painted only some are.
    auto* window = view.window_;
    if (isOutline_ || !window || window->dirtyRegion().contains({{}, window->bounds().size}))
        return false;
    return gradient.kept.paint(context_, area, dirty, gradient.gradient, alpha, [&](CGContext& context) {
        ViewPainter painter(context);
        painter.paintShadow(view, area);
        painter.paintContent(view, area);
    });
}

void ViewPainter::paintShadow(UIView& view, CGRect dirty)
{
    if (!view.shadow_ || isOutline_)
        return;
    auto& shadow = *view.shadow_;
    auto color = shadow.color.resolved(context_.appearance());
    auto alpha = color.components().alpha * (shadow.opacity > 0 ? std::min(shadow.opacity, 1.0) : 0);
    auto [right, down] = shadow.offset;
    if (!(alpha > 0) || !std::isfinite(right) || !std::isfinite(down))
        return;
    CGContextState state(context_);
    context_.translate(right, down);
    auto radius = usableRadius(shadow);
    auto bounds = view.presentationBounds();
    auto background = view.presentationBackgroundColor();
    auto content = bounds;
    if (!view.clipsToBounds_ && !view.subviews_.empty())
        content = content.unionWith(view.subviewBounds().all(view));
    auto isOpaque =
        background && background->components(context_.appearance()).alpha >= 1 && !background->patternImage();
    if (isOpaque && bounds.contains(content)) {
        auto corner = view.presentationCornerRadius();
        drawShadow(context_,
                   RectShadow{.rect = bounds,
                              .cornerRadius = corner,
                              .corners = view.maskedCorners_,
                              .deviation = radius,
                              .color = color.withAlphaComponent(alpha),
                              .hidden = bounds.insetBy(corner, corner).offsetBy(-right, -down)});
        return;
    }
    auto reach = shadowReach(radius) + 2; // somewhat more than will be looked at
    auto seen = dirty.offsetBy(-right, -down).insetBy(-reach, -reach).intersection(content);
    drawShadow(context_, OutlineShadow{content, radius, color.withAlphaComponent(alpha)},
               [&](CGContext& context) {
                   ViewPainter outline(context);
                   outline.isOutline_ = true;
                   outline.paintContent(view, seen);
               });
}

void ViewPainter::paintContent(UIView& view, CGRect dirty)
{
    auto bounds = view.presentationBounds();
    auto seen = bounds.intersection(dirty);
    if (view.clipsToBounds_ && seen.isEmpty())
        return;
    RoundedRect shape{bounds, view.presentationCornerRadius(), view.maskedCorners_};
    auto pieces = view.clipsToBounds_ && shape.radius > 0 ? piecesOf(shape, dirty, context_) : std::nullopt;
    if (!pieces) {
        paintClipped(view, shape, dirty);
        return;
    }
    for (const auto& piece : pieces->inside) {
        CGContextState state(context_);
        context_.clip(piece);
        paintClipped(view, {bounds}, piece);
    }
    for (const auto& piece : pieces->edge) {
        CGContextState state(context_);
        context_.clip(piece);
        paintClipped(view, shape, piece);
    }
}

void ViewPainter::paintClipped(UIView& view, const RoundedRect& shape, CGRect dirty)
{
    std::vector<std::shared_ptr<UIView>> subviews;
    if (!view.subviews_.empty())
        subviews =
            view.subviewBounds().seenIn(view, view.clipsToBounds_ ? shape.rect.intersection(dirty) : dirty);
    paintInOrder(view, shape, subviews, dirty);
}

// The view itself, then the subviews; of what one of them hides only the rest.
void ViewPainter::paintInOrder(UIView& view, const RoundedRect& shape, Subviews subviews, CGRect dirty)
{
    auto seen = shape.rect.intersection(dirty);
    auto hidden = hiddenBehind(subviews, dirty);
    auto showsItself = hidden.front.empty() && !seen.isEmpty();
    for (const auto& piece : hidden.beside) {
        CGContextState state(context_);
        context_.clip(piece);
        paintInOrder(view, shape, subviews.first(subviews.size() - hidden.front.size()), piece);
    }
    if (showsItself)
        paintBackground(view, shape, dirty);
    std::optional<CGContextState> clipping;
    if (view.clipsToBounds_) {
        clipping.emplace(context_);
        clipTo(shape);
    }
    if (showsItself) {
        CGContextState state(context_);
        if (!view.clipsToBounds_)
            context_.clip(shape.rect);
        CurrentAppearance current(view.traits_->colorAppearance());
        view.draw(context_, seen);
    }
    for (const auto& subview : hidden.front.empty() ? subviews : hidden.front)
        paintInSuperview(*subview, view.clipsToBounds_ ? seen : dirty);
}

void ViewPainter::clipTo(const RoundedRect& shape)
{
    if (shape.radius > 0)
        context_.clip(UIBezierPath::roundedRect(shape.rect, shape.radius, shape.corners));
    else
        context_.clip(shape.rect);
}

void ViewPainter::paintBackground(UIView& view, const RoundedRect& shape, CGRect dirty)
{
    auto color = view.presentationBackgroundColor();
    if (!color)
        return;
    if (!(shape.radius > 0))
        return context_.fill(shape.rect, *color);
    auto outline = UIBezierPath::roundedRect(shape.rect, shape.radius, shape.corners);
    auto pieces = piecesOf(shape, dirty, context_);
    if (!pieces)
        return context_.fill(outline, *color);
    for (const auto& piece : pieces->inside)
        context_.fill(piece, *color);
    for (const auto& piece : pieces->edge) {
        CGContextState state(context_);
        context_.clip(piece);
        context_.fill(outline, *color);
    }
}

// The front-most subview that hides enough of what is behind it to paint around it.
ViewPainter::Hidden ViewPainter::hiddenBehind(Subviews subviews, CGRect dirty) const
{
    for (auto i = subviews.size(); i > 0; --i) {
        auto opaque = opaqueFrame(*subviews[i - 1], dirty);
        if (isHiddenBy(opaque, dirty, context_))
            return {subviews.subspan(i - 1), {}};
        if (auto beside = piecesBeside(opaque, dirty, context_))
            return {subviews.subspan(i - 1), *std::move(beside)};
    }
    return {};
}

} // namespace platform
