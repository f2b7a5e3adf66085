// SPDX-License-Identifier: MIT
#include "platform/uikit/UIWindowScene.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <utility>

namespace platform {

void UIScene::connect()
{
    assertOnMainThread();
    if (std::exchange(isConnected_, true))
        return;
    UIApplication::shared().connectedScenes_.push_back(sharedFrom(this));
}

void UIScene::disconnect()
{
    assertOnMainThread();
    if (!std::exchange(isConnected_, false))
        return;
    auto keptAlive = weak_from_this().lock();
    std::erase_if(UIApplication::shared().connectedScenes_,
                  [this](const auto& scene) { return scene.get() == this; });
}

std::vector<std::shared_ptr<UIWindow>> UIWindowScene::windows() const
{
    std::vector<std::shared_ptr<UIWindow>> windows;
    for (const auto& weak : windows_) {
        if (auto window = weak.lock())
            windows.push_back(std::move(window));
    }
    return windows;
}

void UIWindowScene::add(const std::shared_ptr<UIWindow>& window)
{
    windows_.push_back(window);
    connect();
}

void UIWindowScene::remove(const UIWindow& window)
{
    std::erase_if(windows_, [&](const auto& weak) {
        auto other = weak.lock();
        return !other || other.get() == &window;
    });
    if (windows_.empty())
        disconnect();
}

} // namespace platform
