// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UITabBar.h"
#include "platform/uikit/UIViewController.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

// Controllers side by side of which one is selected; its view fills the controller's own above a bar to choose from.
// Main thread only.
class UITabBarController : public UIViewController {
public:
    UITabBarController();
    ~UITabBarController() override;

    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return tabs_; }
    // The selected controller stays selected when it is still there; else the nearest place is.
    // Requires: none is null, none comes twice.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers);
    // What the bar shows of them, by their places; of those without an item the title.
    void setTabBarItems(std::vector<UITabBarItem> items);

    std::size_t selectedIndex() const { return selectedIndex_; } // 0 without tabs
    // Requires: a tab has that place.
    void setSelectedIndex(std::size_t index);
    // Null without tabs.
    std::shared_ptr<UIViewController> selectedViewController() const;
    // The user has chosen a tab, which may be the one that is seen.
    std::function<void(std::size_t)> onSelect;

    const std::shared_ptr<UITabBar>& tabBar() const { return bar_; }
    bool isTabBarHidden() const { return isBarHidden_; }
    void setTabBarHidden(bool hidden); // default: shown

    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;
    void viewSafeAreaInsetsDidChange() override;
    UIStatusBarStyle preferredStatusBarStyle() const override;

private:
    void showSelected();
    void place();
    void fillBar();

    std::vector<std::shared_ptr<UIViewController>> tabs_;
    std::vector<UITabBarItem> items_;
    std::shared_ptr<UITabBar> bar_;
    std::size_t selectedIndex_ = 0;
    bool isBarHidden_ = false;
};

} // namespace platform
