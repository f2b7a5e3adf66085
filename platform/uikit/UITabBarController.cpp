// SPDX-License-Identifier: MIT
#include "platform/uikit/UITabBarController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIContainment_p.h"

#include <algorithm>

namespace platform {

void UITabBarController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers)
{
    assertOnMainThread();
    const auto selected = selectedViewController();
    const auto place = std::ranges::find(controllers, selected);
    const std::size_t last = controllers.empty() ? 0 : controllers.size() - 1;
    selectedIndex_ = place != controllers.end() ? static_cast<std::size_t>(place - controllers.begin())
                                                : std::min(selectedIndex_, last);
    containment::replace(*this, tabs_, std::move(controllers));
    containment::showFilling(*this, tabs_, selectedViewController());
}

void UITabBarController::setSelectedIndex(std::size_t index)
{
    assertOnMainThread();
    precondition(index < tabs_.size(), "the selected tab does not exist");
    selectedIndex_ = index;
    containment::showFilling(*this, tabs_, selectedViewController());
}

std::shared_ptr<UIViewController> UITabBarController::selectedViewController() const
{
    return selectedIndex_ < tabs_.size() ? tabs_[selectedIndex_] : nullptr;
}

void UITabBarController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    containment::showFilling(*this, tabs_, selectedViewController());
}

UIStatusBarStyle UITabBarController::preferredStatusBarStyle() const
{
    const auto selected = selectedViewController();
    return selected ? selected->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

} // namespace platform
