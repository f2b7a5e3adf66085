// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class URL;
class URLOpener;
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

    // The text of the URL that opens the desktop's settings.
    static constexpr std::string_view openSettingsURLString = "app-settings:";
    // Whether something on this desktop opens URLs of that kind.
    bool canOpenURL(const URL& url) const;
    // Asks the desktop to open the URL in whatever program is for it, without waiting. `completion` comes later, in a turn
    // of the main loop, exactly once: true when the desktop, or a program, has taken it.
    void open(const URL& url, std::function<void(bool)> completion = {});
    // What asks the desktop; null: the desktop itself.
    void setURLOpener(std::shared_ptr<URLOpener> opener);

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
    std::shared_ptr<URLOpener> urlOpener_;         // null before first use
    std::vector<std::weak_ptr<UIWindow>> windows_; // those on the desktop, in order of opening
    std::vector<std::shared_ptr<UIScene>> connectedScenes_;
};

} // namespace platform
