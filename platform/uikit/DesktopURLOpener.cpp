// SPDX-License-Identifier: MIT
#include "platform/uikit/DesktopURLOpener.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/OpenURIPortal_p.h"
#include "platform/uikit/SettingsPortal_p.h"
#include "platform/uikit/SpawnedProgram.h"
#include "platform/uikit/UIApplication.h"

#include <QtDBus/QDBusConnection>
#include <QtGui/QGuiApplication>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace platform {

namespace {

struct SettingsProgram {
    std::string_view desktop; // as XDG_CURRENT_DESKTOP names it
    std::string_view program;
};

// Where one desktop has had several, the present one comes first.
constexpr std::array settingsPrograms{
    SettingsProgram{"GNOME", "gnome-control-center"},
    SettingsProgram{"KDE", "systemsettings"},
    SettingsProgram{"KDE", "systemsettings5"},
    SettingsProgram{"XFCE", "xfce4-settings-manager"},
    SettingsProgram{"MATE", "mate-control-center"},
    SettingsProgram{"X-Cinnamon", "cinnamon-settings"},
    SettingsProgram{"Unity", "unity-control-center"},
    SettingsProgram{"Budgie", "budgie-control-center"},
    SettingsProgram{"LXQt", "lxqt-config"},
    SettingsProgram{"COSMIC", "cosmic-settings"},
    SettingsProgram{"Pantheon", "io.elementary.settings"},
};

std::string variable(const char* name, std::string_view otherwise = {})
{
    const char* value = std::getenv(name);
    return value && *value ? std::string(value) : std::string(otherwise);
}

std::vector<std::string> split(std::string_view list, char separator)
{
    std::vector<std::string> parts;
    while (!list.empty()) {
        auto end = list.find(separator);
        if (end != 0)
            parts.emplace_back(list.substr(0, end));
        list.remove_prefix(end == list.npos ? list.size() : end + 1);
    }
    return parts;
}

std::vector<std::string> commandOf(std::string_view program)
{
    std::vector<std::string> command{std::string(program)};
    // This one has a page for each application.
    auto identifier = QGuiApplication::desktopFileName().toStdString();
    if (program == "gnome-control-center" && !identifier.empty()) {
        command.emplace_back("applications");
        command.push_back(identifier);
    }
    return command;
}

// The files that name a program for a kind of content, and the folders of desktop entries that do.
std::vector<std::filesystem::path> handlerLists()
{
    auto home = variable("HOME");
    auto configHome = variable("XDG_CONFIG_HOME", home + "/.config");
    auto dataHome = variable("XDG_DATA_HOME", home + "/.local/share");
    std::vector<std::filesystem::path> files{std::filesystem::path(configHome) / "mimeapps.list"};
    for (const auto& folder : split(variable("XDG_CONFIG_DIRS", "/etc/xdg"), ':'))
        files.push_back(std::filesystem::path(folder) / "mimeapps.list");
    auto dataFolders = split(variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share"), ':');
    dataFolders.insert(dataFolders.begin(), dataHome);
    for (const auto& folder : dataFolders) {
        for (const auto* name : {"mimeapps.list", "mimeinfo.cache"})
            files.push_back(std::filesystem::path(folder) / "applications" / name);
    }
    return files;
}

// Whether the file gives `key` a value in a group other than that of removed associations.
bool names(const std::filesystem::path& file, std::string_view key)
{
    std::ifstream lines(file);
    auto isRemoval = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('['))
            isRemoval = line.starts_with("[Removed");
        else if (!isRemoval && line.starts_with(key) && line.size() > key.size() + 1
                 && line[key.size()] == '=')
            return true;
    }
    return false;
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
    return std::filesystem::exists("/.flatpak-info", ignored) || !variable("SNAP").empty();
}

bool isSettings(const URL& url)
{
    return url.absoluteString() == UIApplication::openSettingsURLString;
}

} // namespace

std::vector<std::string> DesktopURLOpener::settingsCommand()
{
    for (const auto& desktop : split(variable("XDG_CURRENT_DESKTOP"), ':')) {
        for (const auto& known : settingsPrograms) {
            if (known.desktop == desktop && SpawnedProgram::isInstalled(known.program))
                return commandOf(known.program);
        }
    }
    for (const auto& known : settingsPrograms) {
        if (SpawnedProgram::isInstalled(known.program))
            return commandOf(known.program);
    }
    return {};
}

bool DesktopURLOpener::hasHandler(std::string_view scheme)
{
    auto key = "x-scheme-handler/" + std::string(scheme);
    for (const auto& file : handlerLists()) {
        if (names(file, key))
            return true;
    }
    return false;
}

bool DesktopURLOpener::canOpen(const URL& url) const
{
    if (isSettings(url))
        return !settingsCommand().empty();
    if (url.isFileURL()) {
        std::error_code ignored;
        return std::filesystem::exists(url.path(), ignored);
    }
    return isSandboxed() || hasHandler(url.scheme());
}

void DesktopURLOpener::open(const URL& url, std::function<void(bool)> completion)
{
    assertOnMainThread();
    if (isSettings(url)) {
        auto command = settingsCommand();
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
