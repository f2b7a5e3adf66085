// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/URLOpener.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Opens URLs in the programs that the desktop has for them: through the portal on the session bus, and by xdg-open where
// no portal answers. Files always go to xdg-open; the URLs of settings go to the desktop's settings program. Nothing
// passes through a shell. Main thread only.
class DesktopURLOpener : public URLOpener {
public:
    enum class SettingsPage {
        application, // the program's own, or all settings where it has none
        notifications,
    };
    // The text of the URL that opens the page of notifications; that of the other one is
    // UIApplication::openSettingsURLString.
    static constexpr std::string_view openNotificationSettingsURLString = "app-settings:notifications";

    // Looks the scheme up in the desktop's lists of handlers: only programs that are installed count. Inside a sandbox, which hides those, the portal is trusted
    // to find one.
    bool canOpen(const URL& url) const override;
    void open(const URL& url, std::function<void(bool)> completion) override;

    // The settings program of the desktop that XDG_CURRENT_DESKTOP names, else of any that is installed, with its
    // arguments for the page; empty when there is none.
    static std::vector<std::string> settingsCommand(SettingsPage page = SettingsPage::application);
    // Whether the desktop has a program for `scheme` (lower case).
    static bool hasHandler(std::string_view scheme);
};

} // namespace platform
