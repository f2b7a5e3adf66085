// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIScene.h"

#include <memory>
#include <vector>

namespace platform {

// The windows that belong together. A window that is shown without one gets a scene of its own. Connected while one of
// its windows is shown, on the desktop or off-screen. Main thread only.
class UIWindowScene : public UIScene {
public:
    // Those that are shown, in the order in which they were.
    std::vector<std::shared_ptr<UIWindow>> windows() const;

private:
    friend class UIWindow;
    void add(const std::shared_ptr<UIWindow>& window);
    void remove(const UIWindow& window); // also one that is being destroyed

    std::vector<std::weak_ptr<UIWindow>> windows_;
};

} // namespace platform
