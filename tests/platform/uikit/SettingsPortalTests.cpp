// SPDX-License-Identifier: MIT
#include "platform/uikit/SettingsPortal_p.h"

#include <QtDBus/QDBusVariant>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace platform;

QVariant wrapped(const QVariant& value, int times)
{
    return times == 0 ? value : QVariant::fromValue(QDBusVariant(wrapped(value, times - 1)));
}

TEST(SettingsPortal, understands_what_portals_say)
{
    const auto appearance = QStringLiteral("org.freedesktop.appearance");
    const auto interface = QStringLiteral("org.gnome.desktop.interface");
    UITraitCollection dark, contrast, still, large, tiny;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    contrast.accessibilityContrast = UIAccessibilityContrast::high;
    still.prefersReducedMotion = true;
    large.textScale = 1.5;
    tiny.textScale = 0.5;
    struct Case {
        std::string_view name;
        QString group, key;
        QVariant value;
        UITraitCollection expected;
    };
    const Case cases[] = {
        {"dark", appearance, QStringLiteral("color-scheme"), 1u, dark},
        {"no preference is light", appearance, QStringLiteral("color-scheme"), 0u, {}},
        {"light", appearance, QStringLiteral("color-scheme"), 2u, {}},
        {"a number of the future", appearance, QStringLiteral("color-scheme"), 99u, {}},
        {"a colour scheme that is a text",
         appearance,
         QStringLiteral("color-scheme"),
         QStringLiteral("dark"),
         {}},
        {"contrast", appearance, QStringLiteral("contrast"), 1u, contrast},
        {"reduced motion", appearance, QStringLiteral("reduced-motion"), 1u, still},
        {"no animations", interface, QStringLiteral("enable-animations"), false, still},
        {"text scale", interface, QStringLiteral("text-scaling-factor"), 1.5, large},
        {"text scale of nothing", interface, QStringLiteral("text-scaling-factor"), 0.0, tiny},
        {"text scale that is no number",
         interface,
         QStringLiteral("text-scaling-factor"),
         std::numeric_limits<double>::quiet_NaN(),
         {}},
        {"a key of another group", interface, QStringLiteral("color-scheme"), 1u, {}},
        {"nothing", appearance, QStringLiteral("color-scheme"), QVariant(), {}},
    };
    for (const auto& [name, group, key, value, expected] : cases) {
        // Older portals wrap an answer twice, newer ones and the signal once.
        for (int times : {0, 1, 2}) {
            SCOPED_TRACE(std::string(name) + " wrapped " + std::to_string(times));
            UITraitCollection traits;
            auto didChange = SettingsPortal::apply(traits, group, key, wrapped(value, times));
            EXPECT_EQ(traits, expected);
            EXPECT_EQ(didChange, expected != UITraitCollection{});
            EXPECT_FALSE(SettingsPortal::apply(traits, group, key, wrapped(value, times))) << "nothing new";
        }
    }
}

TEST(SettingsPortal, asks_only_a_bus_that_is_there)
{
    struct Case {
        std::string_view name;
        const char* address;
        const char* directory;
        bool isThere;
    };
    auto directory = std::filesystem::temp_directory_path() / "zelk-settings-portal-test";
    std::filesystem::create_directories(directory / "bus");
    auto text = directory.string();
    const Case cases[] = {
        {"an address", "unix:path=/somewhere", nullptr, true},
        {"switched off", "disabled:", text.c_str(), false},
        {"one that would have to be started", "autolaunch:", nullptr, false},
        {"none, and no directory", nullptr, nullptr, false},
        {"none, and a directory without one", nullptr, "/nonexistent", false},
        {"in the runtime directory", nullptr, text.c_str(), true},
    };
    auto put = [](const char* name, const char* value) {
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    };
    for (const auto& [name, address, runtimeDirectory, isThere] : cases) {
        SCOPED_TRACE(name);
        put("DBUS_SESSION_BUS_ADDRESS", address);
        put("XDG_RUNTIME_DIR", runtimeDirectory);
        EXPECT_EQ(SettingsPortal::busIsThere(), isThere);
    }
    put("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    std::filesystem::remove_all(directory);
}

} // namespace
