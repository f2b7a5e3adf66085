// SPDX-License-Identifier: MIT
#include "platform/uikit/SettingsPortal_p.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "tests/support/PrivateBus.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

// A colour as the bus carries it.
struct BusColor {
    double red = 0, green = 0, blue = 0;
};
Q_DECLARE_METATYPE(BusColor)

QDBusArgument& operator<<(QDBusArgument& argument, const BusColor& color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, BusColor&)
{
    return argument;
}

namespace {

using namespace platform;
using namespace Qt::StringLiterals;

QVariant wrapped(const QVariant& value, int times)
{
    return times == 0 ? value : QVariant::fromValue(QDBusVariant(wrapped(value, times - 1)));
}

TEST(SettingsPortal, understands_what_portals_say)
{
    const auto appearance = u"org.freedesktop.appearance"_s, interface = u"org.gnome.desktop.interface"_s;
    const auto scheme = u"color-scheme"_s, scale = u"text-scaling-factor"_s;
    UITraitCollection dark, contrast, still, large, tiny;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    contrast.accessibilityContrast = UIAccessibilityContrast::high;
    still.prefersReducedMotion = true;
    large.textScale = 1.5;
    tiny.textScale = 0.5;
    const std::tuple<std::string_view, QString, QString, QVariant, UITraitCollection> cases[] = {
        {"dark", appearance, scheme, 1u, dark},
        {"no preference is light", appearance, scheme, 0u, {}},
        {"light", appearance, scheme, 2u, {}},
        {"a number of the future", appearance, scheme, 99u, {}},
        {"a colour scheme that is a text", appearance, scheme, u"dark"_s, {}},
        {"contrast", appearance, u"contrast"_s, 1u, contrast},
        {"reduced motion", appearance, u"reduced-motion"_s, 1u, still},
        {"no animations", interface, u"enable-animations"_s, false, still},
        {"text scale", interface, scale, 1.5, large},
        {"text scale of nothing", interface, scale, 0.0, tiny},
        {"text scale that is no number", interface, scale, std::nan(""), {}},
        {"a key of another group", interface, scheme, 1u, {}},
        {"nothing", appearance, scheme, QVariant(), {}},
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
    auto directory = std::filesystem::temp_directory_path() / "zelk-settings-portal-test";
    std::filesystem::create_directories(directory / "bus");
    auto text = directory.string();
    const std::tuple<std::string_view, const char*, const char*, bool> cases[] = {
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

const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto portalInterface = u"org.freedesktop.portal.Settings"_s;
const auto appearanceGroup = u"org.freedesktop.appearance"_s;

// As people's desktops have them: it knows only `Read`, wraps twice, and not every key.
class Portal : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        auto arguments = message.arguments();
        if (message.member() != u"Read"_s || arguments.size() != 2)
            return false;
        if (arguments[1].toString() == u"accent-color"_s)
            return connection.send(message.createReply(wrapped(QVariant::fromValue(accent), 2)));
        if (arguments[1].toString() != u"color-scheme"_s)
            return connection.send(
                message.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s));
        return connection.send(message.createReply(wrapped(1u, 2)));
    }
    BusColor accent;
};

void offer(QDBusConnection& bus, Portal& portal)
{
    bus.registerVirtualObject(portalPath, &portal);
    ASSERT_TRUE(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
}

class SettingsPortalAnswers
    : public ::testing::TestWithParam<std::pair<BusColor, std::optional<ColorComponents>>> { };

TEST_P(SettingsPortalAnswers, are_taken_while_it_waits)
{
    startGraphics(DisplayMode::offscreen);
    tests::PrivateBus desktop;
    qDBusRegisterMetaType<BusColor>();
    if (!desktop.isThere())
        GTEST_SKIP() << "no dbus-daemon is installed";
    // The portal answers from a thread of its own, as this one waits.
    QEventLoop* loop = nullptr;
    QSemaphore isReady;
    std::unique_ptr<QThread> thread(QThread::create([&] {
        Portal portal;
        portal.accent = GetParam().first;
        auto bus = desktop.connect(u"answering-portal"_s);
        offer(bus, portal);
        QEventLoop ownLoop;
        loop = &ownLoop;
        isReady.release();
        ownLoop.exec();
    }));
    thread->start();
    isReady.acquire();
    int changes = 0;
    {
        SettingsPortal settings({}, [&] { ++changes; }, desktop.connect(u"asking-program"_s));
        settings.waitForAnswers(std::chrono::seconds(10));
        EXPECT_EQ(settings.traits().userInterfaceStyle, UIUserInterfaceStyle::dark);
        EXPECT_EQ(settings.traits().accentColor, GetParam().second);
        EXPECT_EQ(settings.traits().textScale, 1) << "a missing setting keeps its default";
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(changes, 0) << "what was waited for is no change";
    }
    loop->quit();
    thread->wait();
}

INSTANTIATE_TEST_SUITE_P(accents, SettingsPortalAnswers,
                         ::testing::Values(std::pair(BusColor{0.25, 0.5, 1}, ColorComponents{0.25, 0.5, 1}),
                                           std::pair(BusColor{-1, -1, -1}, std::nullopt),
                                           std::pair(BusColor{0, std::nan(""), 0}, std::nullopt)));

TEST(SettingsPortal, goes_on_without_a_portal)
{
    startGraphics(DisplayMode::offscreen);
    tests::PrivateBus desktop;
    if (!desktop.isThere())
        GTEST_SKIP() << "no dbus-daemon is installed";
    SettingsPortal settings({}, [] { ADD_FAILURE(); }, desktop.connect(u"lonely-program"_s));
    settings.waitForAnswers(std::chrono::seconds(10)); // the bus itself says that nobody is there
    EXPECT_EQ(settings.traits(), UITraitCollection{});
}

} // namespace
