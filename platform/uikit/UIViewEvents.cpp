// SPDX-License-Identifier: MIT
// Who is hit by an event.
#include "platform/uikit/UIView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/PaintOrder.h"

#include <algorithm>

namespace platform {

namespace {

// What can hardly be seen takes no events.
constexpr CGFloat minimumTouchableAlpha = 0.01;

} // namespace

void UIView::setUserInteractionEnabled(bool enabled)
{
    assertOnMainThread();
    isUserInteractionEnabled_ = enabled;
}

bool UIView::pointInside(CGPoint point) const
{
    return bounds_.contains(point);
}

std::shared_ptr<UIView> UIView::hitTest(CGPoint point)
{
    if (isHidden_ || !isUserInteractionEnabled_ || alpha_ < minimumTouchableAlpha || !pointInside(point))
        return nullptr;
    auto order = paintOrder(subviews_);
    for (auto view = order.rbegin(); view != order.rend(); ++view) {
        auto& subview = **view;
        auto map = subview.modelMapToSuperview();
        if (map.determinant() == 0)
            continue;
        if (auto hit = subview.hitTest(map.inverted().apply(point)))
            return hit;
    }
    return std::static_pointer_cast<UIView>(weak_from_this().lock());
}

bool UIView::offerKeyEquivalent(const UIPress& press)
{
    if (isHidden_ || !isUserInteractionEnabled_ || alpha_ < minimumTouchableAlpha)
        return false;
    auto keptAlive = weak_from_this().lock();
    auto order = paintOrder(subviews_); // a copy: what takes the key may remove views
    for (auto view = order.rbegin(); view != order.rend(); ++view) {
        if ((*view)->offerKeyEquivalent(press))
            return true;
    }
    return performKeyEquivalent(press);
}

} // namespace platform
