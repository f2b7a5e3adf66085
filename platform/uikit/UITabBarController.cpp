// SPDX-License-Identifier: MIT
#include "platform/uikit/UITabBarController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIContainment_p.h"

#include <algorithm>

namespace platform {

UITabBarController::UITabBarController()
    : bar_(std::make_shared<UITabBar>())
{
    bar_->onSelect = [this](std::size_t index) {
        auto keptAlive = weak_from_this().lock();
        if (index >= tabs_.size())
            return;
        setSelectedIndex(index);
        if (auto action = onSelect)
            action(index);
    };
}

UITabBarController::~UITabBarController()
{
    bar_->onSelect = nullptr; // somebody may keep it
}

void UITabBarController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers)
{
    assertOnMainThread();
    const auto selected = selectedViewController();
    const auto place = std::ranges::find(controllers, selected);
    const std::size_t last = controllers.empty() ? 0 : controllers.size() - 1;
    selectedIndex_ = place != controllers.end() ? static_cast<std::size_t>(place - controllers.begin())
                                                : std::min(selectedIndex_, last);
    containment::replace(*this, tabs_, std::move(controllers));
    showSelected();
}

void UITabBarController::setTabBarItems(std::vector<UITabBarItem> items)
{
    assertOnMainThread();
    items_ = std::move(items);
    fillBar();
}

void UITabBarController::setSelectedIndex(std::size_t index)
{
    assertOnMainThread();
    precondition(index < tabs_.size(), "the selected tab does not exist");
    selectedIndex_ = index;
    showSelected();
}

std::shared_ptr<UIViewController> UITabBarController::selectedViewController() const
{
    return selectedIndex_ < tabs_.size() ? tabs_[selectedIndex_] : nullptr;
}

void UITabBarController::setTabBarHidden(bool hidden)
{
    assertOnMainThread();
    isBarHidden_ = hidden;
    showSelected();
}

void UITabBarController::fillBar()
{
    std::vector<UITabBarItem> shown;
    for (std::size_t i = 0; i < tabs_.size(); ++i)
        shown.push_back(i < items_.size() ? items_[i] : UITabBarItem{tabs_[i]->title(), {}});
    bar_->setItems(std::move(shown));
    bar_->setSelectedIndex(selectedIndex_);
}

void UITabBarController::showSelected()
{
    auto own = viewIfLoaded();
    if (!own)
        return;
    auto selected = selectedViewController();
    if (selected)
        selected->view()->setAutoresizingMask({});
    place();
    containment::show(*this, tabs_, {&selected, selected ? 1u : 0u});
    fillBar();
    if (isBarHidden_)
        bar_->removeFromSuperview();
    else
        own->addSubview(bar_); // in front
}

void UITabBarController::place()
{
    auto own = viewIfLoaded();
    auto all = own->bounds();
    auto barHeight =
        isBarHidden_ ? 0 : std::min(UITabBar::height + own->safeAreaInsets().bottom, all.height());
    if (auto selected = selectedViewController())
        selected->view()->setFrame(
            CGRect::make(all.minX(), all.minY(), all.width(), all.height() - barHeight));
    bar_->setFrame(CGRect::make(all.minX(), all.maxY() - barHeight, all.width(), barHeight));
}

void UITabBarController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    showSelected();
}

void UITabBarController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    place();
}

void UITabBarController::viewSafeAreaInsetsDidChange()
{
    UIViewController::viewSafeAreaInsetsDidChange();
    if (auto own = viewIfLoaded())
        own->setNeedsLayout();
}

UIStatusBarStyle UITabBarController::preferredStatusBarStyle() const
{
    const auto selected = selectedViewController();
    return selected ? selected->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

} // namespace platform
