// SPDX-License-Identifier: MIT
// What a view inherits: the traits and the tint colour.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

namespace platform {

void UIView::inheritTraits()
{
    auto inherited = superview_ ? superview_->traits_ : traits_;
    auto traits = window_ == this ? window_->baseTraits() : *inherited;
    if (overrideStyle_ != UIUserInterfaceStyle::unspecified)
        traits.userInterfaceStyle = overrideStyle_;
    if (overrideContentSize_)
        traits.preferredContentSizeCategory = *overrideContentSize_;
    if (traits != *inherited)
        inherited = std::make_shared<const UITraitCollection>(traits);
    auto kept = std::exchange(traits_, inherited); // equal ones are shared from now on
    if (traits == *kept)
        return;
    auto previous = *kept;
    auto keptAlive = weak_from_this().lock();
    setNeedsDisplay();
    setNeedsLayout();
    // Superviews first, so that a view that asks upwards finds the new state.
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        if (subview->superview_ == this)
            subview->inheritTraits();
    }
    if (mask_)
        mask_->inheritTraits();
    CurrentAppearance current(traits_->colorAppearance());
    if (auto controller = viewController_.lock())
        controller->traitCollectionDidChange(previous);
    traitCollectionDidChange(previous);
    if (traits_->accentColor != previous.accentColor && inheritsTint())
        tintColorDidChange();
}

void UIView::setOverrideUserInterfaceStyle(UIUserInterfaceStyle style)
{
    assertOnMainThread();
    if (style == overrideStyle_)
        return;
    overrideStyle_ = style;
    if (!superview_ && style == UIUserInterfaceStyle::unspecified && !window_)
        return; // what it would inherit comes with a superview
    inheritTraits();
}

void UIView::setOverrideContentSizeCategory(std::optional<UIContentSizeCategory> category)
{
    assertOnMainThread();
    if (category == overrideContentSize_)
        return;
    overrideContentSize_ = category;
    if (!superview_ && !category && !window_)
        return; // what it would inherit comes with a superview
    inheritTraits();
}

void UIView::setSemanticContentAttribute(UISemanticContentAttribute attribute)
{
    assertOnMainThread();
    if (attribute == semanticContentAttribute_)
        return;
    semanticContentAttribute_ = attribute;
    setNeedsLayout();
    if (superview_)
        superview_->setNeedsLayout();
    setNeedsDisplay();
}

UIUserInterfaceLayoutDirection UIView::effectiveUserInterfaceLayoutDirection() const
{
    switch (semanticContentAttribute_) {
    case UISemanticContentAttribute::forceLeftToRight:
        return UIUserInterfaceLayoutDirection::leftToRight;
    case UISemanticContentAttribute::forceRightToLeft:
        return UIUserInterfaceLayoutDirection::rightToLeft;
    case UISemanticContentAttribute::unspecified:
        break;
    }
    return traits_->layoutDirection;
}

UIColor UIView::tintColor() const
{
    for (auto* view = this; view; view = view->superview_) {
        if (view->tintColor_)
            return *view->tintColor_;
    }
    const auto& accent = traits_->accentColor;
    return accent ? UIColor(accent->red, accent->green, accent->blue, accent->alpha) : UIColor::systemBlue();
}

bool UIView::inheritsTint() const
{
    for (auto* view = this; view; view = view->superview_) {
        if (view->tintColor_)
            return false;
    }
    return true;
}

void UIView::setTintColor(std::optional<UIColor> color)
{
    assertOnMainThread();
    if (color ? tintColor_ && *color == *tintColor_ : !tintColor_)
        return;
    auto before = tintColor();
    tintColor_ = color ? std::make_unique<const UIColor>(*std::move(color)) : nullptr;
    if (tintColor() != before)
        tellTintColorChanged();
}

void UIView::tellTintColorChanged()
{
    auto keptAlive = weak_from_this().lock();
    setNeedsDisplay();
    tintColorDidChange();
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        if (subview->superview_ == this && !subview->tintColor_)
            subview->tellTintColorChanged();
    }
}

} // namespace platform
