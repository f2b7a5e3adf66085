// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewPainter.h"

#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/PaintOrder.h"
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
    context_.clip(dirty);
    paintGroup(view, dirty);
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
    if (context_.appearance() != view.traits_.colorAppearance())
        context_.setAppearance(view.traits_.colorAppearance());
    if (alpha == 1 && !view.mask_) {
        paintShadow(view, dirty);
        paintContent(view, dirty);
        return;
    }
    auto bounds = view.visualBounds().intersection(dirty);
    if (view.mask_)
        bounds = bounds.intersection(view.mask_->mapToSuperview().apply(view.mask_->visualBounds()));
    if (bounds.isEmpty())
        return;
    context_.beginLayer(bounds, alpha);
    paintShadow(view, bounds);
    paintContent(view, bounds);
    if (view.mask_ && !maskWithGradient(*view.mask_, bounds))
        context_.maskLayer(
            [&](CGContext& context) { ViewPainter(context).paintInSuperview(*view.mask_, bounds); });
    context_.endLayer();
}

// Where all that the mask shows in the rectangle is one gradient, there is no need to paint it by itself first.
bool ViewPainter::maskWithGradient(UIView& mask, CGRect dirty)
{
    constexpr CGFloat rounding = 0.01;
    auto* view = &mask;
    auto map = mask.mapToSuperview();
    while (!dynamic_cast<GradientMask*>(view)) {
        if (view->subviews_.size() != 1 || !isPlain(*view))
            return false;
        view = view->subviews_.front().get();
        map = view->mapToSuperview().concatenating(map);
    }
    if (!isPlain(*view) || !view->subviews_.empty() || map.determinant() == 0
        || !view->presentationBounds().contains(map.inverted().apply(dirty).insetBy(rounding, rounding)))
        return false;
    CGContextState state(context_);
    context_.concat(map);
    context_.setAppearance(view->traits_.colorAppearance());
    maskLayer(context_, dynamic_cast<GradientMask*>(view)->gradientNow());
    return true;
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
    if (!view.clipsToBounds_) {
        for (const auto& subview : view.subviews_) {
            if (!subview->isHidden_)
                content = content.unionWith(subview->mapToSuperview().apply(subview->visualBounds()));
        }
    }
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
    auto reach = shadowReach(radius);
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
    auto radius = view.presentationCornerRadius();
    auto shape = [&] { return UIBezierPath::roundedRect(bounds, radius, view.maskedCorners_); };

    // Where one subview hides all of the rest, painting starts with it.
    auto order = paintOrder(view.subviews_);
    auto first = order.size();
    while (first > 0 && !covers(*order[first - 1], dirty))
        --first;
    auto isCovered = first > 0;

    std::optional<CGContextState> clipping;
    if (view.clipsToBounds_) {
        if (seen.isEmpty())
            return;
        clipping.emplace(context_);
    }
    if (!isCovered && !seen.isEmpty()) {
        if (auto color = view.presentationBackgroundColor()) {
            if (radius > 0)
                context_.fill(shape(), *color);
            else
                context_.fill(bounds, *color);
        }
    }
    if (view.clipsToBounds_) {
        if (radius > 0)
            context_.clip(shape());
        else
            context_.clip(bounds);
    }
    if (!isCovered && !seen.isEmpty()) {
        CGContextState state(context_);
        if (!view.clipsToBounds_)
            context_.clip(bounds);
        CurrentAppearance current(view.traits_.colorAppearance());
        view.draw(context_, seen);
    }
    auto dirtyBelow = view.clipsToBounds_ ? seen : dirty;
    for (auto i = isCovered ? first - 1 : 0; i < order.size(); ++i)
        paintInSuperview(*order[i], dirtyBelow);
}

// Whether the view's own background hides everything behind it in the rectangle (its superview's coordinates).
bool ViewPainter::covers(const UIView& view, CGRect dirty) const
{
    if (view.isHidden_ || view.mask_ || view.presentationAlpha() < 1 || view.presentationCornerRadius() > 0
        || !view.presentationTransform().isIdentity())
        return false;
    auto color = view.presentationBackgroundColor();
    return color && color->components(view.traits_.colorAppearance()).alpha >= 1
        && view.mapToSuperview().apply(view.presentationBounds()).contains(dirty);
}

} // namespace platform
