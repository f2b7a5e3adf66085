// SPDX-License-Identifier: MIT
#include "platform/uikit/DesktopURLOpener.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/DesktopURLOpenerHandlers_p.h"
#include "platform/uikit/OpenURIPortal_p.h"
#include "platform/uikit/SettingsPortal_p.h"
#include "platform/uikit/SpawnedProgram.h"
#include "platform/uikit/UIApplication.h"

#include <QtDBus/QDBusConnection>
#include <QtGui/QGuiApplication>

#include <array>
#include <filesystem>
#include <optional>
#include <utility>

namespace platform {

namespace {

struct SettingsProgram {
    std::string_view desktop;       // as XDG_CURRENT_DESKTOP names it
    std::string_view program;       // of all settings
    std::string_view notifications; // the command of that page, words parted by spaces; empty: there is none
};

// Where one desktop has had several, the present one comes first.
constexpr std::array settingsPrograms{
    SettingsProgram{"GNOME", "gnome-control-center", "gnome-control-center notifications"},
    SettingsProgram{"KDE", "systemsettings", "systemsettings kcm_notifications"},
    SettingsProgram{"KDE", "systemsettings5", "systemsettings5 kcm_notifications"},
    SettingsProgram{"XFCE", "xfce4-settings-manager", "xfce4-notifyd-config"},
    SettingsProgram{"MATE", "mate-control-center", "mate-notification-properties"},
    SettingsProgram{"X-Cinnamon", "cinnamon-settings", "cinnamon-settings notifications"},
    SettingsProgram{"Unity", "unity-control-center", ""},
    SettingsProgram{"Budgie", "budgie-control-center", "budgie-control-center notifications"},
    SettingsProgram{"LXQt", "lxqt-config", "lxqt-config-notificationd"},
    SettingsProgram{"COSMIC", "cosmic-settings", "cosmic-settings notifications"},
    SettingsProgram{"Pantheon", "io.elementary.settings", ""},
};

// The command of that page in one of them; empty when it is not installed.
std::vector<std::string> commandOf(const SettingsProgram& known, DesktopURLOpener::SettingsPage page)
{
    auto isGeneral = page == DesktopURLOpener::SettingsPage::application;
    auto command = splitList(isGeneral ? known.program : known.notifications, ' ');
    if (command.empty() || !SpawnedProgram::isInstalled(command.front()))
        return {};
    // This one has a page for each application.
    auto identifier = QGuiApplication::desktopFileName().toStdString();
    if (isGeneral && known.program == "gnome-control-center" && !identifier.empty()) {
        command.emplace_back("applications");
        command.push_back(identifier);
    }
    return command;
}

// The page that a URL names, if it is one of settings.
std::optional<DesktopURLOpener::SettingsPage> settingsPageOf(const URL& url)
{
    if (url.absoluteString() == UIApplication::openSettingsURLString)
        return DesktopURLOpener::SettingsPage::application;
    if (url.absoluteString() == DesktopURLOpener::openNotificationSettingsURLString)
        return DesktopURLOpener::SettingsPage::notifications;
    return std::nullopt;
}

void complete(std::function<void(bool)> completion, bool didOpen)
{
    if (completion)
        RunLoop::main().perform([completion = std::move(completion), didOpen] { completion(didOpen); });
}

void openByCommand(const std::string& url, std::function<void(bool)> completion)
{
    SpawnedProgram::start({"xdg-open", url}, std::move(completion));
}

// Sandboxed programs see neither the desktop's lists nor its programs.
bool isSandboxed()
{
    std::error_code ignored; // what cannot be looked at is not there
    return std::filesystem::exists("/.flatpak-info", ignored) || !environmentVariable("SNAP").empty();
}

} // namespace

std::vector<std::string> DesktopURLOpener::settingsCommand(SettingsPage page)
{
    for (const auto& desktop : splitList(environmentVariable("XDG_CURRENT_DESKTOP"), ':')) {
        for (const auto& known : settingsPrograms) {
            if (known.desktop != desktop)
                continue;
            if (auto command = commandOf(known, page); !command.empty())
                return command;
        }
    }
    for (const auto& known : settingsPrograms) {
        if (auto command = commandOf(known, page); !command.empty())
            return command;
    }
    return {};
}

bool DesktopURLOpener::hasHandler(std::string_view scheme)
{
    return !scheme.empty() && desktopHasHandler("x-scheme-handler/" + std::string(scheme));
}

bool DesktopURLOpener::canOpen(const URL& url) const
{
    if (auto page = settingsPageOf(url))
        return !settingsCommand(*page).empty();
    if (url.isFileURL()) {
        std::error_code ignored;
        return std::filesystem::exists(url.path(), ignored);
    }
    return isSandboxed() || hasHandler(url.scheme());
}

void DesktopURLOpener::open(const URL& url, std::function<void(bool)> completion)
{
    assertOnMainThread();
    if (auto page = settingsPageOf(url)) {
        auto command = settingsCommand(*page);
        if (command.empty())
            return complete(std::move(completion), false);
        return SpawnedProgram::start(std::move(command), std::move(completion));
    }
    // The portal takes files only as open descriptors, for a program of its choice.
    auto usesPortal =
        !url.isFileURL() && SettingsPortal::busIsThere() && QDBusConnection::sessionBus().isConnected();
    if (!usesPortal)
        return openByCommand(url.absoluteString(), std::move(completion));
    openThroughPortal(QDBusConnection::sessionBus(), url.absoluteString(),
                      [text = url.absoluteString(), completion = std::move(completion)](bool isTaken) {
                          if (isTaken)
                              complete(completion, true);
                          else
                              openByCommand(text, completion);
                      });
}

} // namespace platform
