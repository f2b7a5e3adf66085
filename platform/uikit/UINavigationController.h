// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <memory>
#include <vector>

namespace platform {

// A stack of controllers, each one step deeper than the one before; the top one's view fills the controller's own.
// It has no bar and no transitions yet. Main thread only.
class UINavigationController : public UIViewController {
public:
    UINavigationController() = default;
    // A stack of one. Made by a function because a controller under construction cannot have children.
    static std::shared_ptr<UINavigationController> make(std::shared_ptr<UIViewController> root);

    // Root first.
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return stack_; }
    // Requires: none is null, none comes twice. May be empty.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> stack);
    // Null for an empty stack.
    std::shared_ptr<UIViewController> topViewController() const;
    std::shared_ptr<UIViewController> visibleViewController() const { return topViewController(); }

    // Requires: not on the stack yet.
    void pushViewController(std::shared_ptr<UIViewController> controller);
    // What was on top; null when only the root is left, which stays.
    std::shared_ptr<UIViewController> popViewController();
    // What was above the root, lowest first.
    std::vector<std::shared_ptr<UIViewController>> popToRootViewController();

    void viewDidLoad() override;
    UIStatusBarStyle preferredStatusBarStyle() const override;

private:
    std::vector<std::shared_ptr<UIViewController>> stack_;
};

} // namespace platform
