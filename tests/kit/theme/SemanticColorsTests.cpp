// SPDX-License-Identifier: MIT
#include "kit/theme/semanticColors.h"
#include "platform/foundation/Logger.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace zelk {
namespace {

using platform::Color;
using platform::ColorAppearance;
using platform::UIColor;

// The relative luminance and contrast of the web's accessibility guidelines.
double luminance(const UIColor& color)
{
    auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    auto [red, green, blue, alpha] = color.components();
    EXPECT_EQ(alpha, 1);
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

double contrastOf(const UIColor& a, const UIColor& b, ColorAppearance appearance)
{
    auto first = luminance(a.resolved(appearance)), second = luminance(b.resolved(appearance));
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

constexpr ColorAppearance appearances[]{
    {}, {.isDark = true}, {.highContrast = true}, {.isDark = true, .highContrast = true}};
constexpr double readable = 4.5, visible = 3, strong = 7;

TEST(SemanticColorsTests, textAndTintAreReadableOnEveryBackground)
{
    const std::pair<const char*, const UIColor&> backgrounds[]{
        {"system", zelk_systemBackground()},
        {"secondary", zelk_secondarySystemBackground()},
        {"grouped", zelk_systemGroupedBackground()},
        {"secondary grouped", zelk_secondarySystemGroupedBackground()}};
    auto lightTint = zelk_tintColor().resolved({});
    for (auto appearance : appearances) {
        for (const auto& [name, background] : backgrounds) {
            SCOPED_TRACE(std::string(name) + (appearance.isDark ? " dark" : " light")
                         + (appearance.highContrast ? " strong" : ""));
            auto against = [&](const UIColor& color) { return contrastOf(color, background, appearance); };
            EXPECT_GE(against(UIColor::label()), appearance.highContrast ? strong : readable);
            EXPECT_GE(against(zelk_tintColor()), appearance.highContrast ? strong : readable);
            EXPECT_GE(against(darkIndigo()), visible);
            EXPECT_GE(against(lightIndigo()), visible);
            // A theme stores the tint as one colour, which then meets both appearances.
            EXPECT_GE(against(lightTint), visible);
        }
        EXPECT_GE(contrastOf(UIColor::white(), darkIndigo(), appearance), readable);
        EXPECT_GE(contrastOf(UIColor::black(), lightIndigo(), appearance), readable);
        EXPECT_NE(zelk_systemBackground().resolved(appearance),
                  zelk_secondarySystemBackground().resolved(appearance));
    }
}

// Each in a process of its own: the colours are made once in a process.
class SemanticColorsDeathTests : public testing::Test {
protected:
    SemanticColorsDeathTests() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

#define EXPECT_IN_OWN_PROCESS(condition)                                                                     \
    EXPECT_EXIT(std::_Exit((condition) ? 0 : 1), testing::ExitedWithCode(0), "")

TEST_F(SemanticColorsDeathTests, aColorForTheDeclarativeLayerKeepsWhatItFoundFirst)
{
    EXPECT_IN_OWN_PROCESS([] {
        auto fromCatalogue = zelk_systemBackground();
        zelk_tintColor() = UIColor::red();
        bool isSnapshot = tintColor() == Color{UIColor::red()};
        zelk_tintColor() = UIColor::green();
        return isSnapshot && tintColor() == Color{UIColor::red()} && zelk_tintColor() == UIColor::green()
            && systemBackground() == Color{fromCatalogue} && fromCatalogue.isDynamic();
    }());
}

TEST_F(SemanticColorsDeathTests, registeringReplacesWhatIsGivenButNoConstant)
{
    EXPECT_IN_OWN_PROCESS([] {
        auto indigo = darkIndigo();
        auto grouped = zelk_systemGroupedBackground();
        auto tint = zelk_tintColor();
        registerColors({.darkIndigo = UIColor::red(),
                        .lightIndigo = UIColor::red(),
                        .systemBackground = UIColor::red(),
                        .secondarySystemBackground = UIColor::green(),
                        .secondarySystemGroupedBackground = UIColor::blue()});
        return darkIndigo() == indigo && lightIndigo() != UIColor::red() && zelk_tintColor() == tint
            && zelk_systemBackground() == UIColor::red()
            && zelk_secondarySystemBackground() == UIColor::green()
            && zelk_systemGroupedBackground() == grouped
            && zelk_secondarySystemGroupedBackground() == UIColor::blue()
            && darkIndigo<Color>() == Color{indigo};
    }());
}

TEST_F(SemanticColorsDeathTests, aColorThatIsMissingOrDamagedStopsTheProcess)
{
    tests::TemporaryDirectory directory;
    directory.write("Colors.xcassets/tintColor.colorset/Contents.json", "{");
    auto bundle = *platform::Bundle::open(directory.url());
    EXPECT_DEATH(requiredColor("systemBackground", *bundle), "no colour named systemBackground");
    EXPECT_DEATH(requiredColor("tintColor", *bundle), "no colour named tintColor");
}

} // namespace
} // namespace zelk
