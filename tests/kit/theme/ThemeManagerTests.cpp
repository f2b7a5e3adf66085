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

const std::string tintKey = applicationIdentifierPrefix() + ".zelkkit.themeManager.tintColor";
const std::string appearanceKey = applicationIdentifierPrefix() + ".zelkkit.themeManager.appearance";

std::shared_ptr<platform::NSUserDefaults> emptySettings()
{
    auto settings = std::make_shared<platform::NSUserDefaults>("theme-tests-" + std::to_string(::getpid()));
    settings->removeObjectForKey(tintKey);
    settings->removeObjectForKey(appearanceKey);
    return settings;
}

TEST(ThemeManagerTests, whatIsStoredIsReadOrTheDefaultWhereItIsNothingThatCanBe)
{
    platform::VirtualClock clock;
    auto settings = emptySettings();
    auto theme = std::make_shared<ThemeManager>(settings);
    EXPECT_EQ(theme->tintUIColor(), colorFromHex(*hexString(zelk_tintColor())));
    EXPECT_EQ(theme->appearance(), Appearance::system);
    EXPECT_EQ(theme->colorScheme(), std::nullopt);
    EXPECT_EQ(settings->stringForKey(tintKey), std::nullopt) << "making one stores nothing";

    struct Case {
        std::string_view name;
        PropertyListValue stored;
        Appearance appearance;
        std::optional<ColorScheme> scheme;
    };
    const Case cases[]{
        {"light", 1, Appearance::light, ColorScheme::light},
        {"dark", 2, Appearance::dark, ColorScheme::dark},
        {"one more", 3, Appearance::system, {}},
        {"one less", -1, Appearance::system, {}},
        {"not a small number", std::int64_t(1) << 32 | 2, Appearance::system, {}},
        {"text", "2", Appearance::system, {}},
    };
    for (const auto& each : cases) {
        settings->setObject(each.stored, appearanceKey);
        EXPECT_EQ(theme->appearance(), each.appearance) << each.name;
        EXPECT_EQ(theme->colorScheme(), each.scheme) << each.name;
    }
    settings->setObject("336699FF", tintKey);
    EXPECT_EQ(theme->tintColor(), Color{UIColor(0.2, 0.4, 0.6)}) << "nothing was kept yet";
    for (auto damaged : {"", "blue", "#33"}) {
        settings->setObject(damaged, tintKey);
        EXPECT_EQ(theme->tintUIColor(), ThemeManager::defaultTintUIColor()) << damaged;
    }
}

TEST(ThemeManagerTests, aTintIsStoredThenAnnouncedThenShown)
{
    platform::VirtualClock clock;
    auto settings = emptySettings();
    auto theme = std::make_shared<ThemeManager>(settings);
    auto window = std::make_shared<platform::UIWindow>(platform::CGRect{{}, {40, 30}});
    window->showOffscreen();
    clock.settle();
    auto tintBefore = window->tintColor();
    int notices = 0;
    auto subscription = theme->objectWillChange().sink([&](const auto&) {
        ++notices;
        if (notices > 1)
            return;
        EXPECT_EQ(settings->stringForKey(tintKey), "336699FF");
        EXPECT_EQ(theme->tintUIColor(), UIColor(0.2, 0.4, 0.6));
        EXPECT_EQ(window->tintColor(), tintBefore) << "windows come last";
    });
    theme->setTintUIColor(dynamicColor);
    EXPECT_EQ(notices, 1);
    clock.settle();
    EXPECT_EQ(window->tintColor(), dynamicColor) << "as it was given, not as it was stored";

    settings->setObject("FF0000FF", tintKey);
    EXPECT_EQ(theme->tintUIColor(), UIColor(0.2, 0.4, 0.6)) << "kept, not read again";
    EXPECT_EQ(std::make_shared<ThemeManager>(settings)->tintUIColor(), UIColor::red());
    clock.settle();
    EXPECT_EQ(window->tintColor(), UIColor::red()) << "a new one gives the windows what is stored";

    theme->setTintColor(Color{dynamicColor}); // depends on where it is shown
    theme->setTintUIColor(patternColor());    // cannot be written
    clock.settle();
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(settings->stringForKey(tintKey), "FF0000FF");
    EXPECT_EQ(window->tintColor(), UIColor::red());

    theme->setTintColor(Color{UIColor::green()});
    theme->modifyTintUIColor([](UIColor& color) { color = color.withAlphaComponent(0.5); });
    EXPECT_EQ(settings->stringForKey(tintKey), "00FF0080");
    subscription = theme->objectWillChange().sink([&](const auto&) { theme.reset(); });
    theme->setTintUIColor(UIColor::blue());
    clock.settle();
    EXPECT_EQ(window->tintColor(), UIColor::blue()) << "what was begun is done, without the theme";
    window->close();
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
    auto settings = emptySettings();
    auto theme = std::make_shared<ThemeManager>(settings);
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
    EXPECT_EQ(settings->integerForKey(appearanceKey), 2);
}

TEST(ThemeManagerDeathTests, theDefaultIsTakenOnceAndHasToBeAColorThatCanBeStored)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto run = [] {
        auto settings = emptySettings();
        zelk_tintColor() = UIColor::red();
        ThemeManager first(settings);
        bool isRed =
            ThemeManager::defaultTintUIColor() == UIColor::red() && first.tintUIColor() == UIColor::red();
        zelk_tintColor() = UIColor::green();
        ThemeManager second(settings);
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
