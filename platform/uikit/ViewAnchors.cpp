// SPDX-License-Identifier: MIT
// What views offer to make constraints with.
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/NSLayoutAnchor.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/ViewLayout.h"

namespace platform {

LayoutState& UIView::layoutState()
{
    if (!layoutState_)
        layoutState_ = std::make_unique<LayoutState>();
    return *layoutState_;
}

std::vector<std::shared_ptr<NSLayoutConstraint>> UIView::constraints() const
{
    return layoutState_ ? layoutState_->constraints : std::vector<std::shared_ptr<NSLayoutConstraint>>();
}

std::shared_ptr<UILayoutGuide> UIView::safeAreaLayoutGuide()
{
    assertOnMainThread();
    auto& guide = layoutState().safeAreaGuide;
    if (!guide) {
        guide = std::make_shared<UILayoutGuide>();
        guide->owner_ = std::static_pointer_cast<UIView>(weak_from_this().lock());
        guide->isSafeArea_ = true;
    }
    return guide;
}

NSLayoutXAxisAnchor UIView::leadingAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::leading};
}

NSLayoutXAxisAnchor UIView::trailingAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::trailing};
}

NSLayoutXAxisAnchor UIView::leftAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::left};
}

NSLayoutXAxisAnchor UIView::rightAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::right};
}

NSLayoutXAxisAnchor UIView::centerXAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::centerX};
}

NSLayoutYAxisAnchor UIView::topAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::top};
}

NSLayoutYAxisAnchor UIView::bottomAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::bottom};
}

NSLayoutYAxisAnchor UIView::centerYAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::centerY};
}

NSLayoutYAxisAnchor UIView::firstBaselineAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::firstBaseline};
}

NSLayoutYAxisAnchor UIView::lastBaselineAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::lastBaseline};
}

NSLayoutDimension UIView::widthAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::width};
}

NSLayoutDimension UIView::heightAnchor()
{
    return {weak_from_this(), NSLayoutAttribute::height};
}

} // namespace platform
