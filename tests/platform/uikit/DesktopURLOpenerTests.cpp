// SPDX-License-Identifier: MIT
#include "platform/uikit/DesktopURLOpener.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "platform/uikit/OpenURIPortal_p.h"
#include "platform/uikit/UIApplication.h"
#include "tests/support/EnvironmentOverride.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVirtualObject>

namespace {

using namespace platform;

using Environment = tests::EnvironmentOverride;

void makeProgram(const tests::TemporaryDirectory& folder, std::string_view name, std::string_view script)
{
    namespace fs = std::filesystem;
    fs::permissions(folder.file(name, script), fs::perms::owner_all);
}

bool open(const std::string& url)
{
    std::optional<bool> result;
    auto count = 0;
    UIApplication::shared().open(*URL::parse(url), [&](bool didOpen) {
        result = didOpen;
        ++count;
        RunLoop::main().stop();
    });
    EXPECT_EQ(count, 0) << "the answer comes later";
    RunLoop::main().run();
    EXPECT_EQ(count, 1);
    return *result;
}

TEST(DesktopURLOpener, hands_urls_to_the_desktops_program_as_they_are)
{
    tests::TemporaryDirectory folder;
    Environment environment({{"PATH", folder.path("bin")}, {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}});
    EXPECT_FALSE(open("https://example.org/")) << "there is no such program";
    makeProgram(folder, "bin/xdg-open",
                "#!/bin/sh\nprintf '%s|' \"$#\" \"$@\" > '" + folder.path("said") + "'\n");
    for (std::string url :
         {"https://example.org/?a=1&b=$(touch%20x);c='d'", "file:///tmp/a%20b", "mailto:a@b.c"}) {
        EXPECT_TRUE(open(url));
        EXPECT_EQ(folder.read("said"), "1|" + URL::parse(url)->absoluteString() + "|");
    }
    makeProgram(folder, "bin/xdg-open", "#!/bin/sh\nexit 3\n");
    EXPECT_FALSE(open("https://example.org/")) << "it says that it found nothing";
}

TEST(DesktopURLOpener, finds_the_settings_of_the_desktop_that_runs)
{
    struct Case {
        const char* name;
        std::string desktop;
        std::vector<std::string> installed;
        std::string program;
    };
    const Case cases[] = {
        {"its own", "KDE", {"gnome-control-center", "systemsettings"}, "systemsettings"},
        {"one of several names",
         "ubuntu:GNOME",
         {"gnome-control-center", "systemsettings"},
         "gnome-control-center"},
        {"an older one", "KDE", {"systemsettings5"}, "systemsettings5"},
        {"another desktop's", "sway", {"xfce4-settings-manager"}, "xfce4-settings-manager"},
        {"none", "GNOME", {}, ""},
    };
    auto settings = *URL::parse(UIApplication::openSettingsURLString);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        tests::TemporaryDirectory folder;
        Environment environment({{"PATH", folder.path("bin")}, {"XDG_CURRENT_DESKTOP", test.desktop}});
        for (const auto& program : test.installed)
            makeProgram(folder, "bin/" + program,
                        "#!/bin/sh\nprintf %s \"$0\" > '" + folder.path("ran") + "'\n");
        auto command = DesktopURLOpener::settingsCommand();
        EXPECT_EQ(command.empty() ? "" : command.front(), test.program);
        EXPECT_EQ(DesktopURLOpener().canOpen(settings), !test.program.empty());
        EXPECT_EQ(open(std::string(UIApplication::openSettingsURLString)), !test.program.empty());
        EXPECT_EQ(folder.read("ran").ends_with(test.program), true);
    }
}

TEST(DesktopURLOpener, opens_the_page_of_notifications_where_there_is_one)
{
    struct Case {
        std::string desktop, installed;
        std::vector<std::string> command;
    };
    const Case cases[] = {
        {"GNOME", "gnome-control-center", {"gnome-control-center", "notifications"}},
        {"XFCE", "xfce4-notifyd-config", {"xfce4-notifyd-config"}},
        {"XFCE", "xfce4-settings-manager", {}},
        {"Unity", "unity-control-center", {}},
        {"sway", "systemsettings", {"systemsettings", "kcm_notifications"}},
    };
    const auto url = *URL::parse(DesktopURLOpener::openNotificationSettingsURLString);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.installed);
        tests::TemporaryDirectory folder;
        Environment environment({{"PATH", folder.path("bin")}, {"XDG_CURRENT_DESKTOP", test.desktop}});
        makeProgram(folder, "bin/" + test.installed,
                    "#!/bin/sh\nprintf '%s ' \"${0##*/}\" \"$@\" > '" + folder.path("ran") + "'\n");
        EXPECT_EQ(DesktopURLOpener::settingsCommand(DesktopURLOpener::SettingsPage::notifications),
                  test.command);
        EXPECT_EQ(DesktopURLOpener().canOpen(url), !test.command.empty());
        EXPECT_EQ(open(url.absoluteString()), !test.command.empty());
        std::string ran;
        for (const auto& word : test.command)
            ran += word + " ";
        EXPECT_EQ(folder.read("ran"), ran);
    }
}

TEST(DesktopURLOpener, knows_what_the_desktop_has_programs_for)
{
    tests::TemporaryDirectory folder;
    Environment environment({{"PATH", folder.path("bin")},
                             {"XDG_CURRENT_DESKTOP", "Shell:Fine"},
                             {"XDG_CONFIG_HOME", folder.path("config")},
                             {"XDG_CONFIG_DIRS", folder.path("etc")},
                             {"XDG_DATA_HOME", folder.path("data")},
                             {"XDG_DATA_DIRS", folder.path("one") + ":" + folder.path("two")}});
    makeProgram(folder, "bin/viewer", "#!/bin/sh\n");
    auto entry = [&](const std::string& place, const std::string& lines) {
        folder.write(place + ".desktop",
                     "[Desktop Entry]\nType=Application\n" + lines + "\n[Other]\nExec=none\n");
    };
    entry("one/applications/good", "Exec=viewer --open %U");
    entry("data/applications/kde/deep", "Exec = \"" + folder.path("bin/viewer") + "\" %u");
    entry("one/applications/missing", "Exec=not-installed %u");
    entry("one/applications/tried", "Exec=viewer\nTryExec=not-installed");
    entry("one/applications/hidden", "Exec=viewer\nHidden=true");
    entry("two/applications/bus", "DBusActivatable=true");
    entry("two/applications/idle", "Name=Nothing to run");
    folder.write("config/fine-mimeapps.list",
                 "[Default Applications]\nx-scheme-handler/desktops=good.desktop\n");
    folder.write("config/mimeapps.list",
                 "[Removed Associations]\nx-scheme-handler/gone=good.desktop;bus.desktop\n"
                 "[Default Applications]\nx-scheme-handler/mine=good.desktop\nx-scheme-handler/empty=\n"
                 "x-scheme-handler/spaced = missing.desktop; kde-deep.desktop ;\nx-scheme-handler/no value\n"
                 "x-scheme-handler/evil=../../good.desktop\nx-scheme-handler/nowhere=nobody.desktop\n"
                 "[Unknown]\nx-scheme-handler/unknown=good.desktop\n");
    std::string cache = "[MIME Cache]\n";
    for (const auto* name : {"missing", "tried", "hidden", "bus", "idle"})
        cache.append("x-scheme-handler/").append(name).append("=").append(name).append(".desktop;\n");
    folder.write(
        "two/applications/mimeinfo.cache",
        cache
            + "x-scheme-handler/gone=good.desktop;\nx-scheme-handler/theirs=missing.desktop;good.desktop;\n");
    const std::pair<const char*, bool> cases[] = {
        {"mine", true},     {"theirs", true}, {"desktops", true}, {"spaced", true},
        {"bus", true},      {"gone", false},  {"empty", false},   {"min", false},
        {"", false},        {"evil", false},  {"nowhere", false}, {"unknown", false},
        {"missing", false}, {"tried", false}, {"hidden", false},  {"idle", false},
    };
    for (const auto& [scheme, expected] : cases)
        EXPECT_EQ(DesktopURLOpener::hasHandler(scheme), expected) << scheme;
    EXPECT_TRUE(DesktopURLOpener().canOpen(folder.url("config/mimeapps.list")));
    EXPECT_FALSE(DesktopURLOpener().canOpen(folder.url("nothing")));
}

// Takes secure URLs only, and keeps what it was asked.
class Portal : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.interface() != QLatin1String("org.freedesktop.portal.OpenURI")
            || message.signature() != QLatin1String("ssa{sv}"))
            return false;
        asked = message.arguments()[1].toString().toStdString();
        auto reply = asked.starts_with("https:")
            ? message.createReply(QVariant::fromValue(QDBusObjectPath(QLatin1String("/request"))))
            : message.createErrorReply(QLatin1String("org.freedesktop.portal.Error.NotAllowed"), QString());
        return connection.send(reply);
    }
    std::string asked;
};

TEST(OpenURIPortal, says_whether_the_portal_took_the_url)
{
    startGraphics(DisplayMode::offscreen);
    tests::PrivateBus bus;
    if (!bus.isThere())
        GTEST_SKIP() << "no dbus-daemon is installed";
    auto program = bus.connect(QLatin1String("url-program"));
    auto desktop = bus.connect(QLatin1String("url-portal"));
    auto ask = [&](const std::string& url) {
        std::optional<bool> answer;
        openThroughPortal(program, url, [&](bool isTaken) { answer = isTaken; });
        EXPECT_FALSE(answer) << "the answer comes later";
        while (!answer)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return *answer;
    };
    EXPECT_FALSE(ask("https://example.org/")) << "nobody is there";
    Portal portal;
    desktop.registerVirtualObject(QLatin1String("/org/freedesktop/portal/desktop"), &portal);
    ASSERT_TRUE(desktop.registerService(QLatin1String("org.freedesktop.portal.Desktop")));
    EXPECT_TRUE(ask("https://example.org/?a=%20"));
    EXPECT_EQ(portal.asked, "https://example.org/?a=%20");
    EXPECT_FALSE(ask("gopher://example.org/"));
}

} // namespace
