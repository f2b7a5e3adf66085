// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIContainment_p.h"

namespace platform {

std::shared_ptr<UINavigationController> UINavigationController::make(std::shared_ptr<UIViewController> root)
{
    auto controller = std::make_shared<UINavigationController>();
    controller->setViewControllers({std::move(root)});
    return controller;
}

void UINavigationController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> stack)
{
    assertOnMainThread();
    containment::replace(*this, stack_, std::move(stack));
    containment::showFilling(*this, stack_, topViewController());
}

std::shared_ptr<UIViewController> UINavigationController::topViewController() const
{
    return stack_.empty() ? nullptr : stack_.back();
}

void UINavigationController::pushViewController(std::shared_ptr<UIViewController> controller)
{
    auto stack = stack_;
    stack.push_back(std::move(controller));
    setViewControllers(std::move(stack));
}

std::shared_ptr<UIViewController> UINavigationController::popViewController()
{
    if (stack_.size() < 2)
        return nullptr;
    auto popped = stack_.back();
    setViewControllers({stack_.begin(), stack_.end() - 1});
    return popped;
}

std::vector<std::shared_ptr<UIViewController>> UINavigationController::popToRootViewController()
{
    if (stack_.size() < 2)
        return {};
    std::vector popped(stack_.begin() + 1, stack_.end());
    setViewControllers({stack_.front()});
    return popped;
}

void UINavigationController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    containment::showFilling(*this, stack_, topViewController());
}

UIStatusBarStyle UINavigationController::preferredStatusBarStyle() const
{
    const auto top = topViewController();
    return top ? top->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

} // namespace platform
