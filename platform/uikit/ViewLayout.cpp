// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewLayout.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/ViewLayoutSystem.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// A text's height follows its width: solved once for the width, once for the height, and once more for what
// that moved. More would be views whose wishes chase each other.
constexpr int passLimit = 3;

std::shared_ptr<UIView> viewOf(const std::shared_ptr<NSObject>& item)
{
    if (auto guide = std::dynamic_pointer_cast<UILayoutGuide>(item))
        return guide->owningView();
    return std::static_pointer_cast<UIView>(item);
}

float sanitized(float priority)
{
    return std::isnan(priority) ? UILayoutPriorityRequired
                                : std::clamp(priority, 1.0f, UILayoutPriorityRequired);
}

} // namespace

void ViewLayout::solve(UIView& view)
{
    auto hasConstraints = view.layoutState_ && !view.layoutState_->constraints.empty();
    auto isNeeded = hasConstraints || std::ranges::any_of(view.subviews(), [](auto& subview) {
                        return !subview->translatesAutoresizingMask_;
                    });
    if (!isNeeded)
        return;
    for (int pass = 0; pass < passLimit; ++pass) {
        System system(view);
        system.solve();
        if (system.apply())
            break;
    }
}

CGSize ViewLayout::fittingSize(UIView& view, CGSize target)
{
    System system(view, target);
    system.solve();
    return system.rootSize();
}

void ViewLayout::invalidate(UIView& view)
{
    view.setNeedsLayout();
    for (auto* inner = &view; inner->superview_ && !inner->translatesAutoresizingMask_;
         inner = inner->superview_)
        inner->superview_->setNeedsLayout();
}

void ViewLayout::willLeaveSuperview(UIView& view)
{
    for (auto* ancestor = view.superview_; ancestor; ancestor = ancestor->superview_) {
        if (!ancestor->layoutState_)
            continue;
        auto constraints = ancestor->layoutState_->constraints; // deactivating takes them out
        for (auto& constraint : constraints) {
            auto first = viewOf(constraint->firstItem()), second = viewOf(constraint->secondItem());
            if ((first && first->isDescendant(view)) || (second && second->isDescendant(view)))
                constraint->setActive(false);
        }
    }
}

void ViewLayout::intrinsicContentSizeChanged(UIView& view)
{
    if (view.superview_ && !view.translatesAutoresizingMask_)
        invalidate(*view.superview_);
}

void ViewLayout::safeAreaChanged(UIView& view)
{
    if (view.layoutState_ && view.layoutState_->safeAreaGuide)
        invalidate(view);
}

float UIView::contentHuggingPriority(UILayoutAxis axis) const
{
    return layoutState_ ? layoutState_->hugging[static_cast<std::size_t>(axis)] : LayoutState::defaultHugging;
}

void UIView::setContentHuggingPriority(float priority, UILayoutAxis axis)
{
    assertOnMainThread();
    layoutState().hugging[static_cast<std::size_t>(axis)] = sanitized(priority);
    ViewLayout::intrinsicContentSizeChanged(*this);
}

float UIView::contentCompressionResistancePriority(UILayoutAxis axis) const
{
    return layoutState_ ? layoutState_->compression[static_cast<std::size_t>(axis)]
                        : LayoutState::defaultCompression;
}

void UIView::setContentCompressionResistancePriority(float priority, UILayoutAxis axis)
{
    assertOnMainThread();
    layoutState().compression[static_cast<std::size_t>(axis)] = sanitized(priority);
    ViewLayout::intrinsicContentSizeChanged(*this);
}

CGSize UIView::systemLayoutSizeFitting(CGSize target)
{
    assertOnMainThread();
    return ViewLayout::fittingSize(*this, target);
}

} // namespace platform
