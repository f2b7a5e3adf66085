// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace platform {

// Controllers side by side of which one is selected; its view fills the controller's own. It draws no tab bar yet:
// the program selects. Main thread only.
class UITabBarController : public UIViewController {
public:
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return tabs_; }
    // The selected controller stays selected when it is still there; else the nearest place is.
    // Requires: none is null, none comes twice.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers);

    std::size_t selectedIndex() const { return selectedIndex_; } // 0 without tabs
    // Requires: a tab has that place.
    void setSelectedIndex(std::size_t index);
    // Null without tabs.
    std::shared_ptr<UIViewController> selectedViewController() const;

    void viewDidLoad() override;
    UIStatusBarStyle preferredStatusBarStyle() const override;

private:
    std::vector<std::shared_ptr<UIViewController>> tabs_;
    std::size_t selectedIndex_ = 0;
};

} // namespace platform
