// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIScene;
class UIWindow;

// The process as the desktop sees it: its event loop, windows and the desktop's settings. Main thread only.
class UIApplication {
public:
    static UIApplication& shared();

    // The reverse-DNS name under which the desktop knows the program: its desktop entry's, without the ending. Windows
    // that are made later carry it.
    void setIdentifier(const std::string& identifier);
    // Connects to the window system. Requires displayIsAvailable() (graphics/GraphicsRuntime.h).
    void start();
    // Runs until `terminate` or until the last window is closed; gives the exit status.
    int run();
    void terminate(int exitStatus = 0);

    const std::vector<std::weak_ptr<UIWindow>>& windows() const { return windows_; }

    // What stands on the desktop, in the order in which it came there.
    const std::vector<std::shared_ptr<UIScene>>& connectedScenes() const { return connectedScenes_; }

    // The desktop's appearance, contrast, text scale and motion settings, asked from the settings portal without
    // blocking for longer than the first frame can wait; the defaults where no portal answers. Changes come later through
    // all windows' traits.
    const UITraitCollection& desktopTraits();

private:
    friend class UIScene;
    friend class UIWindow;
    struct State;
    UIApplication();
    ~UIApplication();
    void add(UIWindow& window);
    void remove(UIWindow& window);

    // all main thread only
    std::unique_ptr<State> state_;
    std::vector<std::weak_ptr<UIWindow>> windows_; // those on the desktop, in order of opening
    std::vector<std::shared_ptr<UIScene>> connectedScenes_;
};

} // namespace platform
