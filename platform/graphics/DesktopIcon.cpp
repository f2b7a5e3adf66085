// SPDX-License-Identifier: MIT
#include "platform/graphics/DesktopIcon_p.h"

#include "platform/graphics/GraphicsRuntime_p.h"

#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtGui/QIcon>

#include <algorithm>

namespace platform {

namespace {

// The theme that the desktop's settings name. The library is kept from reading them by itself: that would bring the
// desktop's whole toolkit into the process.
QString themeName()
{
    constexpr struct {
        const char* file;
        const char* key;
    } places[]{{"gtk-4.0/settings.ini", "Settings/gtk-icon-theme-name"},
               {"gtk-3.0/settings.ini", "Settings/gtk-icon-theme-name"},
               {"kdeglobals", "Icons/Theme"}};
    for (auto& place : places) {
        auto path =
            QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QString::fromLatin1(place.file));
        if (path.isEmpty())
            continue;
        auto name = QSettings(path, QSettings::IniFormat).value(QString::fromLatin1(place.key)).toString();
        if (!name.isEmpty())
            return name;
    }
    return QStringLiteral("Adwaita");
}

void prepareThemes()
{
    static const bool prepared = [] {
        guiApplication();
        // Not every window system tells the library where themes are.
        QIcon::setThemeSearchPaths(QStandardPaths::locateAll(
            QStandardPaths::GenericDataLocation, QStringLiteral("icons"), QStandardPaths::LocateDirectory));
        QIcon::setThemeName(themeName());
        QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
        return true;
    }();
    static_cast<void>(prepared);
}

// Names of files are no names of icons.
bool isIconName(std::string_view name)
{
    return !name.empty() && name.size() <= 100 && name.front() != '.'
        && std::ranges::all_of(name, [](char c) {
               return c == '-' || c == '_' || c == '.' || c == '+' || (c >= '0' && c <= '9')
                   || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
           });
}

QIcon iconNamed(std::string_view name, bool& isSymbolic)
{
    if (!isIconName(name))
        return {};
    prepareThemes();
    auto text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    auto symbolic = QStringLiteral("-symbolic");
    for (auto& each : {text, text + symbolic}) {
        isSymbolic = each.endsWith(symbolic);
        // A theme may stand in with a name cut short, for a wish that is more general: not here.
        if (QIcon::hasThemeIcon(each))
            return QIcon::fromTheme(each);
    }
    return {};
}

} // namespace

bool desktopIconExists(std::string_view name)
{
    bool isSymbolic = false;
    return !iconNamed(name, isSymbolic).isNull();
}

DesktopIcon desktopIcon(std::string_view name, int side)
{
    DesktopIcon result;
    auto icon = iconNamed(name, result.isSymbolic);
    if (!icon.isNull())
        result.image = icon.pixmap(QSize(side, side), 1.0).toImage();
    return result;
}

} // namespace platform
