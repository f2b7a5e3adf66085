// SPDX-License-Identifier: MIT
#include "kit/foundation/keyWindow.h"

#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"

namespace zelk {

std::shared_ptr<platform::UIWindow> keyWindow(platform::UIApplication& application)
{
    for (auto& scene : application.connectedScenes()) {
        auto windowScene = std::dynamic_pointer_cast<platform::UIWindowScene>(scene);
        if (!windowScene)
            continue;
        for (auto& window : windowScene->windows()) {
            if (window->isKeyWindow())
                return window;
        }
    }
    return nullptr;
}

void hideKeyboard(platform::UIApplication& application)
{
    if (auto window = keyWindow(application))
        window->makeFirstResponder(nullptr);
}

std::shared_ptr<platform::UIViewController> topViewController()
{
    auto window = keyWindow(platform::UIApplication::shared());
    auto top = window ? window->rootViewController() : nullptr;
    while (auto presented = top ? top->presentedViewController() : nullptr)
        top = std::move(presented);
    return top;
}

} // namespace zelk
