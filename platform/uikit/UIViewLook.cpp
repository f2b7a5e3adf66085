// SPDX-License-Identifier: MIT
// How a view looks, and what of the window has to be painted again when that changes.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/ScreenSight.h"
#include "platform/uikit/SubviewBounds.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewAnimator.h"
#include "platform/uikit/ViewLayout.h"
#include "platform/uikit/shadowBounds.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

AnimatableNumbers number(CGFloat value)
{
    return {{value}, 1};
}

AnimatableNumbers numbers(const std::optional<UIColor>& color, ColorAppearance appearance)
{
    if (!color)
        return {{}, 4}; // clear
    auto [red, green, blue, alpha] = color->components(appearance);
    return {{red, green, blue, alpha}, 4};
}

} // namespace

void UIView::setAlpha(CGFloat alpha)
{
    assertOnMainThread();
    precondition(!std::isnan(alpha), "a view's alpha was set to something that is no number");
    alpha = std::clamp(alpha, 0.0, 1.0);
    if (alpha == alpha_)
        return;
    markPlaceDirty();
    auto before = std::exchange(alpha_, alpha);
    ViewAnimator::valueChanged(*this, ViewAnimator::Property::alpha, number(before), number(alpha));
    markPlaceDirty();
}

CGFloat UIView::presentationAlpha() const
{
    auto value = animations_ ? ViewAnimator::presented(*this, ViewAnimator::Property::alpha) : std::nullopt;
    return value ? std::clamp(value->components[0], 0.0, 1.0) : alpha_;
}

void UIView::setHidden(bool hidden)
{
    assertOnMainThread();
    if (hidden == isHidden_)
        return;
    markPlaceDirty();
    isHidden_ = hidden;
    visualFrameDidChange();
    markPlaceDirty();
    if (superview_)
        notifyAccessibility(*superview_, AccessibilityEvent::childrenChanged);
}

void UIView::setBackgroundColor(std::optional<UIColor> color)
{
    assertOnMainThread();
    if (color == backgroundColor_)
        return;
    auto before = std::exchange(backgroundColor_, std::move(color));
    auto appearance = traits_->colorAppearance();
    ViewAnimator::valueChanged(*this, ViewAnimator::Property::backgroundColor, numbers(before, appearance),
                               numbers(backgroundColor_, appearance));
    setNeedsDisplay();
}

std::optional<UIColor> UIView::presentationBackgroundColor() const
{
    auto value =
        animations_ ? ViewAnimator::presented(*this, ViewAnimator::Property::backgroundColor) : std::nullopt;
    if (!value)
        return backgroundColor_;
    const auto& c = value->components;
    return UIColor(c[0], c[1], c[2], std::clamp(c[3], 0.0, 1.0));
}

std::optional<UIViewShadow> UIView::shadow() const
{
    return shadow_ ? std::optional(*shadow_) : std::nullopt;
}

void UIView::setShadow(const std::optional<UIViewShadow>& shadow)
{
    assertOnMainThread();
    if (shadow == this->shadow())
        return;
    markPlaceDirty();
    shadow_ = shadow ? std::make_shared<const UIViewShadow>(*shadow) : nullptr;
    visualFrameDidChange();
    markPlaceDirty();
}

void UIView::setClipsToBounds(bool clips)
{
    assertOnMainThread();
    if (clips == clipsToBounds_)
        return;
    markPlaceDirty();
    clipsToBounds_ = clips;
    visualFrameDidChange();
    markPlaceDirty();
}

void UIView::setCornerRadius(CGFloat radius)
{
    assertOnMainThread();
    precondition(std::isfinite(radius) && radius >= 0, "a corner radius was set to less than nothing");
    if (radius == cornerRadius_)
        return;
    auto before = std::exchange(cornerRadius_, radius);
    ViewAnimator::valueChanged(*this, ViewAnimator::Property::cornerRadius, number(before), number(radius));
    markPlaceDirty();
}

CGFloat UIView::presentationCornerRadius() const
{
    auto value =
        animations_ ? ViewAnimator::presented(*this, ViewAnimator::Property::cornerRadius) : std::nullopt;
    return value ? std::max(value->components[0], 0.0) : cornerRadius_;
}

void UIView::setMaskedCorners(UIRectCorner corners)
{
    assertOnMainThread();
    if (corners == maskedCorners_)
        return;
    maskedCorners_ = corners;
    markPlaceDirty();
}

void UIView::setMask(std::shared_ptr<UIView> mask)
{
    assertOnMainThread();
    if (mask == mask_)
        return;
    precondition(!mask || !isDescendant(*mask), "a view was made the mask of a view inside of it");
    if (mask)
        mask->removeFromSuperview();
    if (mask_) {
        auto former = mask_;
        release(*former);
        former->setWindow(nullptr);
    }
    markPlaceDirty();
    mask_ = std::move(mask);
    if (mask_) {
        mask_->superview_ = this;
        mask_->setWindow(window_);
        mask_->inheritTraits();
        if (mask_->wantsLayout())
            mask_->markSuperviewsForLayout();
    }
}

void UIView::setZPosition(CGFloat position)
{
    assertOnMainThread();
    precondition(!std::isnan(position), "a view's z position was set to something that is no number");
    if (position == zPosition_)
        return;
    zPosition_ = position;
    markPlaceDirty();
}

void UIView::setNeedsDisplay()
{
    setNeedsDisplay(presentationBounds());
}

void UIView::setNeedsDisplay(CGRect rect)
{
    assertOnMainThread();
    markDirty(rect.intersection(presentationBounds()));
}

void UIView::markPlaceDirty()
{
    if (!window_ || isHidden_)
        return;
    // While all of the window is dirty, as it is at first, there is nothing to find out.
    if (window_->isAllDirty())
        screenDidChange();
    else
        markDirty(visualBounds());
}

void UIView::markDirty(CGRect rect)
{
    if (!window_)
        return;
    const UIView* inner = nullptr;
    for (auto* view = this; view; inner = view, view = view->superview_) {
        if (view->mask_ && view->mask_.get() != inner && !rect.isEmpty())
            maskedContentDidChange(*view->mask_);
        if (view->isHidden_ || rect.isEmpty())
            return;
        if (view->animations_ == nullptr ? view->alpha_ == 0 : view->presentationAlpha() == 0)
            return;
        if (view->clipsToBounds_)
            rect = rect.intersection(view->presentationBounds());
        if (view->shadow_)
            rect = withShadow(rect, *view->shadow_);
        if (view == window_) {
            window_->addDirty(rect);
            return;
        }
        if (!rect.isNull())
            rect = view->mapToSuperview().apply(rect);
    }
}

CGRect UIView::visualBounds() const
{
    auto result = presentationBounds();
    if (!clipsToBounds_ && !subviews_.empty())
        result = result.unionWith(subviewBounds().all(*this));
    return shadow_ ? withShadow(result, *shadow_) : result;
}

CGRect UIView::visualFrame() const
{
    if (isHidden_)
        return CGRect::null();
    if (animations_ || !transform_.isIdentity())
        return mapToSuperview().apply(visualBounds());
    return visualBounds().offsetBy(center_.x - bounds_.midX(), center_.y - bounds_.midY());
}

SubviewBounds& UIView::subviewBounds() const
{
    if (!subviewBounds_)
        subviewBounds_ = std::make_unique<SubviewBounds>();
    return *subviewBounds_;
}

// A view that has not been asked where its subviews are, or was told already that it has to look again, has told those
// around it, or nobody there relies on it. So a change goes up only as far as somebody knows an answer.
void UIView::visualFrameDidChange()
{
    for (auto* view = this; auto* around = view->superview_; view = around) {
        auto isKnown = around->mask_.get() != view && around->subviewBounds_
            && around->subviewBounds_->markChanged(*around, *view);
        if (!isKnown || around->clipsToBounds_)
            return;
    }
}

void UIView::subviewOrderDidChange()
{
    auto wasKnown = !subviewBounds_ || subviewBounds_->markReordered();
    if (subviews_.empty())
        subviewBounds_.reset(); // nobody asks where none are, and the next one is news
    if (wasKnown && !clipsToBounds_)
        visualFrameDidChange();
}

} // namespace platform
