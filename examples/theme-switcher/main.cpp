// SPDX-License-Identifier: MIT
// The kit's colours, and a theme to choose that is there the next time: theme-switcher, or
// theme-switcher --snapshot OUT.png [light|dark] for a picture of it without a display.
#include "kit/theme/AnimationPreset.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/ThemeManager.h"
#include "kit/theme/derivedColors.h"
#include "kit/theme/hexString.h"
#include "kit/theme/randomColor.h"
#include "kit/theme/semanticColors.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <array>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>

namespace {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;
using zelk::ThemeManager;

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
constexpr CGSize windowSize{524, 628};

struct NamedColor {
    std::string name;
    UIColor color;
    bool operator==(const NamedColor&) const = default;
};

const std::vector<NamedColor>& tints()
{
    static const std::vector<NamedColor> list{
        {"Kit", zelk::zelk_tintColor()},      {"Indigo", zelk::darkIndigo()},
        {"Blue", UIColor(0.04, 0.44, 0.90)},  {"Green", UIColor(0.10, 0.53, 0.25)},
        {"Amber", UIColor(0.72, 0.40, 0.02)}, {"Red", UIColor(0.83, 0.18, 0.20)},
        {"Pink", UIColor(0.80, 0.16, 0.49)}};
    return list;
}

const std::vector<NamedColor>& kitColors()
{
    static const std::vector<NamedColor> list{
        {"tintColor", zelk::zelk_tintColor()},
        {"darkIndigo", zelk::darkIndigo()},
        {"lightIndigo", zelk::lightIndigo()},
        {"systemBackground", zelk::zelk_systemBackground()},
        {"secondarySystemBackground", zelk::zelk_secondarySystemBackground()},
        {"systemGroupedBackground", zelk::zelk_systemGroupedBackground()},
        {"secondarySystemGroupedBackground", zelk::zelk_secondarySystemGroupedBackground()}};
    return list;
}

// Black or white, whichever is read on `color`.
UIColor textColor(const UIColor& color)
{
    auto white = UIColor::white(), black = UIColor::black();
    return zelk::bestBackgroundColor(color, {.threshold = 0.55, .bright = white, .dark = black});
}

// A heading over what belongs together.
template <View Content>
struct Section {
    std::string title;
    Content content;

    auto body() const
    {
        auto card =
            RoundedRectangle{CornerRadius::_150} | fill(zelk::zelk_secondarySystemGroupedBackground());
        return VStack{
            {.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
            Text{title} | font(Font::footnote().weight(FontWeight::semibold))
                | foregroundColor(UIColor::secondaryLabel()) | padding(EdgeSet::horizontal, Spacing::_50),
            content | padding(Spacing::_200)
                | flexibleFrame({.maxWidth = infinity,
                                 .alignment = {HorizontalAlignment::leading, VerticalAlignment::center}})
                | background(card)};
    }
};
template <View Content>
Section(const char*, Content) -> Section<Content>;

// One of the three appearances, filled when it is chosen.
struct AppearanceChoice {
    zelk::Appearance appearance;
    EnvironmentObject<ThemeManager> theme;

    auto dynamicProperties() { return std::tie(theme); }
    auto body() const
    {
        auto manager = theme.object();
        auto isChosen = manager->appearance() == appearance;
        auto ground = isChosen ? manager->tintUIColor() : zelk::zelk_systemGroupedBackground();
        auto label = Text{zelk::description(appearance)} | font(Font::body().weight(FontWeight::medium))
            | foregroundColor(isChosen ? textColor(ground) : UIColor::label())
            | flexibleFrame({.maxWidth = infinity, .minHeight = GridSize::_250})
            | background(RoundedRectangle{CornerRadius::_100} | fill(ground));
        return Button{[manager, chosen = appearance] { manager->setAppearance(chosen); }, label};
    }
    bool operator==(const AppearanceChoice&) const = default;
};

// A round swatch with a ring around the one that is stored.
struct TintChoice {
    NamedColor tint;
    EnvironmentObject<ThemeManager> theme;

    auto dynamicProperties() { return std::tie(theme); }
    auto body() const
    {
        auto manager = theme.object();
        auto isChosen = zelk::hexString(manager->tintUIColor()) == zelk::hexString(tint.color);
        auto ring = Circle{} | stroke(isChosen ? tint.color : UIColor::clear(), Spacing::_25)
            | padding(Spacing::_25 / 2);
        auto swatch = Circle{} | fill(tint.color) | padding(Spacing::_50) | overlay(ring)
            | frame({.width = GridSize::_250, .height = GridSize::_250});
        return Button{[manager, color = tint.color] {
                          withAnimation(zelk::AnimationPreset::medium(),
                                        [&] { manager->setTintUIColor(color); });
                      },
                      swatch}
        | accessibilityLabel(tint.name);
    }
    bool operator==(const TintChoice&) const = default;
};

// A colour of the kit as it is here, with the text in which it is stored.
struct ColorRow {
    NamedColor named;
    Environment<ColorSchemeKey> scheme;

    auto dynamicProperties() { return std::tie(scheme); }
    auto body() const
    {
        auto here = named.color.resolved({.isDark = *scheme == ColorScheme::dark});
        auto shape = RoundedRectangle{CornerRadius::_50};
        return HStack{{.spacing = Spacing::_150},
                      shape | fill(named.color) | overlay(shape | stroke(UIColor::separator(), 1))
                          | frame({.width = GridSize::_300, .height = GridSize::_150}),
                      Text{named.name} | font(Font::subheadline()) | lineLimit(1),
                      Spacer{},
                      Text{zelk::hexString(here).value_or("")} | font(Font::footnote().monospaced())
                          | foregroundColor(UIColor::secondaryLabel())};
    }
    bool operator==(const ColorRow&) const = default;
};

struct Switcher {
    EnvironmentObject<ThemeManager> theme;

    auto dynamicProperties() { return std::tie(theme); }
    auto body() const
    {
        auto manager = theme.object();
        auto title =
            HStack{Text{"Theme"} | font(Font::largeTitle().bold()), Spacer{},
                   Button{"Surprise me", [manager] { manager->setTintColor(zelk::randomColor<Color>()); }}};
        auto appearances = HStack{{.spacing = Spacing::_100},
                                  ForEach{allCases(zelk::Appearance()), std::identity{},
                                          [](auto each) { return AppearanceChoice{each}; }}};
        auto tintRow =
            HStack{{.spacing = Spacing::_250},
                   ForEach{tints(), &NamedColor::name, [](const auto& each) { return TintChoice{each}; }}};
        auto colors =
            VStack{{.spacing = Spacing::_100},
                   ForEach{kitColors(), &NamedColor::name, [](const auto& each) { return ColorRow{each}; }}};
        return VStack{{.spacing = Spacing::_250},
                      title,
                      Section{"Appearance", appearances},
                      Section{"Tint", tintRow},
                      Section{"Colours of the kit", colors},
                      Spacer{}}
        | padding(Spacing::_300) | background(Color{zelk::zelk_systemGroupedBackground()})
            | preferredColorScheme(manager->colorScheme());
    }
};

auto makeController(const std::shared_ptr<ThemeManager>& theme)
{
    auto root = Switcher{} | environmentObject(theme);
    return std::make_shared<UIHostingController<decltype(root)>>(root);
}

int writeSnapshot(const char* path, bool isDark)
{
    SnapshotOptions options{.size = windowSize, .scale = 2};
    if (isDark)
        options.traits.userInterfaceStyle = UIUserInterfaceStyle::dark;
    CurrentAppearance current(options.traits.colorAppearance());
    auto picture = snapshot(makeController(std::make_shared<ThemeManager>()), options);
    auto written = picture ? picture->writePNG(path) : Result<void>(std::unexpected(picture.error()));
    if (!written) {
        std::fprintf(stderr, "theme-switcher: %s: %s\n", path,
                     written.error().localizedDescription().c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
    if (words.size() >= 2 && words.size() <= 3 && words[0] == "--snapshot")
        return writeSnapshot(arguments[2], words.size() == 3 && words[2] == "dark");
    if (!words.empty()) {
        std::fprintf(stderr, "usage: theme-switcher [--snapshot OUT.png [light|dark]]\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "theme-switcher: there is no display; try --snapshot OUT.png\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.desktopTraits(); // known before the theme reads what the default tint is here
    auto theme = std::make_shared<ThemeManager>();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Theme");
    window->setRootViewController(makeController(theme));
    window->makeKeyAndVisible();
    return application.run();
}
