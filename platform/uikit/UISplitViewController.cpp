// SPDX-License-Identifier: MIT
#include "platform/uikit/UISplitViewController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIContainment_p.h"
#include "platform/uikit/UIView.h"

#include <algorithm>

namespace platform {

std::shared_ptr<UIViewController> UISplitViewController::viewController(Column column) const
{
    return columns_[static_cast<std::size_t>(column)];
}

void UISplitViewController::setViewController(std::shared_ptr<UIViewController> controller, Column column)
{
    assertOnMainThread();
    columns_[static_cast<std::size_t>(column)] = std::move(controller);
    std::vector<std::shared_ptr<UIViewController>> wanted;
    std::ranges::remove_copy(columns_, std::back_inserter(wanted), nullptr);
    containment::replace(*this, contained_, std::move(wanted));
    arrange();
}

bool UISplitViewController::isCollapsed() const
{
    const auto own = viewIfLoaded();
    return !own || own->bounds().size.width < minimumExpandedWidth;
}

void UISplitViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    arrange();
}

void UISplitViewController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    arrange();
}

void UISplitViewController::arrange()
{
    const auto own = viewIfLoaded();
    if (!own || isArranging_)
        return;
    if (std::exchange(wasCollapsed_, isCollapsed()) != isCollapsed() && onCollapseChange) {
        isArranging_ = true;
        const auto action = onCollapseChange;
        action();
        isArranging_ = false;
    }
    placeColumns(*own);
}

void UISplitViewController::placeColumns(UIView& own)
{
    if (contained_.empty())
        return;
    if (isCollapsed() || contained_.size() == 1) {
        containment::showFilling(*this, contained_, contained_.back());
        return;
    }
    const CGRect whole = own.bounds();
    const CGFloat primaryWidth = std::min(primaryColumnWidth, whole.size.width * 0.4);
    const CGFloat hair = 1 / std::max(traitCollection().displayScale, 1.0);
    const CGFloat secondaryWidth = whole.size.width - primaryWidth - hair;
    const bool rightToLeft =
        own.effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    const auto rect = [&](CGFloat x, CGFloat width) {
        return CGRect::make(whole.minX() + (rightToLeft ? whole.width() - x - width : x), whole.minY(), width,
                            whole.height());
    };
    const auto place = [&](UIViewController& controller, CGRect frame) {
        controller.view()->setAutoresizingMask({});
        controller.view()->setFrame(frame);
    };
    place(*contained_[0], rect(0, primaryWidth));
    place(*contained_[1], rect(primaryWidth + hair, secondaryWidth));
    own.setBackgroundColor(UIColor::separator()); // seen between the columns
    containment::show(*this, contained_, contained_);
}

} // namespace platform
