// SPDX-License-Identifier: MIT
#include "kit/theme/ThemeManager.h"

#include "kit/foundation/applicationIdentifierPrefix.h"
#include "kit/theme/colorFromHex.h"
#include "kit/theme/hexString.h"
#include "kit/theme/semanticColors.h"
#include "platform/graphics/UIImage.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>

namespace zelk {
namespace {

using platform::Color;
using platform::ColorScheme;
using platform::PropertyListValue;
using platform::UIColor;

const UIColor dynamicColor = UIColor::dynamic(UIColor(0.2, 0.4, 0.6), UIColor::white());

UIColor patternColor()
{
    constexpr std::byte pixel[4]{};
    return UIColor::pattern(platform::UIImage::fromPixels(pixel, 1, 1));
}

// Settings that begin and end empty.
class Settings {
public:
    Settings()
        : defaults_(
              std::make_shared<platform::NSUserDefaults>("zelk-theme-tests-" + std::to_string(::getpid())))
    {
        clear();
    }
    ~Settings() { clear(); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    const std::shared_ptr<platform::NSUserDefaults>& defaults() const { return defaults_; }
    static std::string key(std::string_view name)
    {
        return applicationIdentifierPrefix() + ".zelkkit.themeManager." + std::string(name);
    }
    std::optional<std::string> tint() const { return defaults_->stringForKey(key("tintColor")); }
    void set(std::string_view name, PropertyListValue value)
    {
        defaults_->setObject(std::move(value), key(name));
    }

private:
    void clear()
    {
        defaults_->removeObjectForKey(key("tintColor"));
        defaults_->removeObjectForKey(key("appearance"));
    }
    std::shared_ptr<platform::NSUserDefaults> defaults_;
};

TEST(ThemeManagerTests, whatIsStoredIsReadOrTheDefaultWhereItIsNothingThatCanBe)
{
    platform::VirtualClock clock;
    Settings settings;
    auto theme = std::make_shared<ThemeManager>(settings.defaults());
    EXPECT_EQ(theme->tintUIColor(), colorFromHex(*hexString(zelk_tintColor())));
    EXPECT_EQ(theme->appearance(), Appearance::system);
    EXPECT_EQ(theme->colorScheme(), std::nullopt);
    EXPECT_EQ(settings.tint(), std::nullopt) << "making one stores nothing";

    struct Case {
        std::string_view name;
        PropertyListValue stored;
        Appearance appearance;
        std::optional<ColorScheme> scheme;
    };
    using Storage = PropertyListValue::Storage;
    const Case cases[]{
        {"light", Storage(std::int64_t(1)), Appearance::light, ColorScheme::light},
        {"dark", Storage(std::int64_t(2)), Appearance::dark, ColorScheme::dark},
        {"system", Storage(std::int64_t(0)), Appearance::system, {}},
        {"one more", Storage(std::int64_t(3)), Appearance::system, {}},
        {"one less", Storage(std::int64_t(-1)), Appearance::system, {}},
        {"not a small number", Storage(std::int64_t(1) << 32 | 2), Appearance::system, {}},
        {"text", "2", Appearance::system, {}},
    };
    for (const auto& each : cases) {
        settings.set("appearance", each.stored);
        EXPECT_EQ(theme->appearance(), each.appearance) << each.name;
        EXPECT_EQ(theme->colorScheme(), each.scheme) << each.name;
    }
    settings.set("tintColor", "336699FF");
    EXPECT_EQ(theme->tintColor(), Color{UIColor(0.2, 0.4, 0.6)}) << "nothing was kept yet";
    for (auto damaged : {"", "blue", "#33"}) {
        settings.set("tintColor", damaged);
        EXPECT_EQ(theme->tintUIColor(), ThemeManager::defaultTintUIColor()) << damaged;
    }
}

TEST(ThemeManagerTests, aTintIsStoredThenAnnouncedThenShown)
{
    platform::VirtualClock clock;
    Settings settings;
    auto theme = std::make_shared<ThemeManager>(settings.defaults());
    auto window = std::make_shared<platform::UIWindow>(platform::CGRect{{}, {40, 30}});
    window->showOffscreen();
    clock.settle();
    auto tintBefore = window->tintColor();
    int notices = 0;
    auto subscription = theme->objectWillChange().sink([&](const auto&) {
        ++notices;
        EXPECT_EQ(settings.tint(), "336699FF");
        EXPECT_EQ(theme->tintUIColor(), UIColor(0.2, 0.4, 0.6));
        EXPECT_EQ(window->tintColor(), tintBefore) << "windows come last";
    });
    theme->setTintUIColor(dynamicColor);
    EXPECT_EQ(notices, 1);
    clock.settle();
    EXPECT_EQ(window->tintColor(), dynamicColor) << "as it was given, not as it was stored";

    settings.set("tintColor", "FF0000FF");
    EXPECT_EQ(theme->tintUIColor(), UIColor(0.2, 0.4, 0.6)) << "kept, not read again";
    EXPECT_EQ(std::make_shared<ThemeManager>(settings.defaults())->tintUIColor(), UIColor::red());
    clock.settle();
    EXPECT_EQ(window->tintColor(), UIColor::red()) << "a new one gives the windows what is stored";

    theme->setTintColor(Color{dynamicColor}); // depends on where it is shown
    theme->setTintUIColor(patternColor());    // cannot be written
    clock.settle();
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(settings.tint(), "FF0000FF");
    EXPECT_EQ(window->tintColor(), UIColor::red());

    subscription.cancel();
    theme->setTintColor(Color{UIColor::green()});
    theme->modifyTintUIColor([](UIColor& color) { color = color.withAlphaComponent(0.5); });
    EXPECT_EQ(settings.tint(), "00FF0080");
    theme->setTintUIColor(UIColor::blue());
    theme.reset();
    clock.settle();
    EXPECT_EQ(window->tintColor(), UIColor::blue()) << "what was begun is done";
    window->close();
}

TEST(ThemeManagerTests, anObserverMayLetGoOfTheTheme)
{
    platform::VirtualClock clock;
    Settings settings;
    auto theme = std::make_shared<ThemeManager>(settings.defaults());
    auto subscription = theme->objectWillChange().sink([&](const auto&) { theme.reset(); });
    theme->setTintUIColor(UIColor::red());
    EXPECT_EQ(settings.tint(), "FF0000FF");
    EXPECT_EQ(theme, nullptr);
}

// What an application does with it: a view that changes it, and shows it.
struct Themed {
    platform::EnvironmentObject<ThemeManager> theme;

    auto dynamicProperties() { return std::tie(theme); }
    auto body() const
    {
        auto manager = theme.object();
        return platform::VStack{
                   platform::Text{description(manager->appearance())},
                   platform::Button{"Tint", [manager] { manager->setTintUIColor(UIColor::red()); }},
                   platform::Button{"Night", [manager] { manager->setAppearance(Appearance::dark); }},
                   platform::Color{UIColor::systemBackground()}}
        | platform::preferredColorScheme(manager->colorScheme());
    }
};

TEST(ThemeManagerTests, viewsOfAWindowFollowTheTheme)
{
    harness::ViewHarness harness;
    Settings settings;
    auto theme = std::make_shared<ThemeManager>(settings.defaults());
    auto content = Themed{} | platform::environmentObject(theme);
    harness.show(std::make_shared<platform::UIHostingController<decltype(content)>>(content));
    harness.settle();
    harness.find("System");
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {160, 470}), "ffffff");
    harness.tap("Tint");
    harness.tap("Night");
    harness.settle();
    harness.find("Dark");
    EXPECT_EQ(harness.find("Tint").tintColor(), UIColor::red());
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {160, 470}), "000000");
    EXPECT_EQ(settings.defaults()->integerForKey(Settings::key("appearance")), 2);
}

TEST(ThemeManagerDeathTests, theDefaultIsTakenOnceAndHasToBeAColorThatCanBeStored)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto run = [] {
        Settings settings;
        zelk_tintColor() = UIColor::red();
        ThemeManager first(settings.defaults());
        bool isRed =
            ThemeManager::defaultTintUIColor() == UIColor::red() && first.tintUIColor() == UIColor::red();
        zelk_tintColor() = UIColor::green();
        ThemeManager second(settings.defaults());
        std::_Exit(isRed && second.tintUIColor() == UIColor::red()
                           && ThemeManager::defaultTintUIColor() == UIColor::red()
                       ? 0
                       : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
    auto stop = [] {
        zelk_tintColor() = patternColor();
        ThemeManager theme(std::make_shared<platform::NSUserDefaults>("zelk-theme-tests"));
    };
    EXPECT_DEATH(stop(), "no hexadecimal form");
}

} // namespace
} // namespace zelk
