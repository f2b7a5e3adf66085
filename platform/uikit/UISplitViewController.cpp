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
    if (!own || contained_.empty())
        return;
    const CGRect whole = own->bounds();
    if (isCollapsed() || contained_.size() == 1) {
        containment::showFilling(*this, contained_, contained_.back());
        return;
    }
    const CGFloat primaryWidth = std::min(primaryColumnWidth, whole.size.width * 0.4);
    const CGFloat secondaryWidth = whole.size.width - primaryWidth;
    const bool rightToLeft =
        own->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    const auto place = [&](UIViewController& controller, CGFloat x, CGFloat width) {
        controller.view()->setAutoresizingMask({});
        controller.view()->setFrame({{whole.origin.x + x, whole.origin.y}, {width, whole.size.height}});
    };
    place(*contained_[0], rightToLeft ? secondaryWidth : 0, primaryWidth);
    place(*contained_[1], rightToLeft ? 0 : primaryWidth, secondaryWidth);
    containment::show(*this, contained_, contained_);
}

} // namespace platform
