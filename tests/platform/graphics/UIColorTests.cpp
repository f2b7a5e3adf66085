// SPDX-License-Identifier: MIT
#include "platform/graphics/UIColor.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr ColorAppearance dark{.isDark = true};
constexpr ColorAppearance strong{.highContrast = true};
constexpr ColorAppearance darkStrong{.isDark = true, .highContrast = true};

TEST(UIColorTests, aDynamicColorAnswersForEachAppearanceAndElseForTheNearest)
{
    auto color = UIColor::dynamic(UIColor::red(), UIColor::green(), UIColor::blue(), UIColor::white());
    EXPECT_EQ(color.resolved({}), UIColor::red());
    EXPECT_EQ(color.resolved(dark), UIColor::green());
    EXPECT_EQ(color.resolved(strong), UIColor::blue());
    EXPECT_EQ(color.resolved(darkStrong), UIColor::white());
    EXPECT_EQ(UIColor::dynamic(color, color, color, color), color) << "a family inside gives its member";
    auto pair = UIColor::dynamic(UIColor::red(), UIColor::green());
    EXPECT_EQ(pair.resolved(strong), UIColor::red());
    EXPECT_EQ(pair.resolved(darkStrong), UIColor::green());
    EXPECT_EQ(pair, UIColor::dynamic(UIColor::red(), UIColor::green()));
    EXPECT_NE(pair, UIColor::red()) << "their first members are equal";
    EXPECT_EQ(pair.withAlphaComponent(0.25).resolved(dark), UIColor::green().withAlphaComponent(0.25));
}

TEST(UIColorTests, blendingWithATransparentColorKeepsTheHue)
{
    auto half = UIColor::red().blended(UIColor::clear(), 0.5);
    EXPECT_EQ(half, UIColor(1, 0, 0, 0.5));
    EXPECT_EQ(UIColor::black().blended(UIColor::white(), 0.5), UIColor::gray(0.5));
    EXPECT_EQ(UIColor::black().blended(UIColor::white(), 7), UIColor::white()) << "the way ends at the other";
    auto dynamicHalf = UIColor::systemBackground().blended(UIColor::label(), 0.5);
    EXPECT_EQ(dynamicHalf.resolved({}), UIColor::gray(0.5));
    EXPECT_EQ(dynamicHalf.resolved(dark), UIColor::gray(0.5));
}

// Text that cannot be told from its background is the fault of a mistyped number.
TEST(UIColorTests, everyLabelStandsOutFromEveryBackgroundInEachAppearance)
{
    auto luminance = [](const ColorComponents& c) {
        return 0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue;
    };
    for (auto appearance : {ColorAppearance{}, dark, strong, darkStrong}) {
        for (auto* background : {&UIColor::systemBackground(), &UIColor::secondarySystemBackground(),
                                 &UIColor::tertiarySystemBackground(), &UIColor::systemGroupedBackground(),
                                 &UIColor::secondarySystemGroupedBackground()}) {
            for (auto* label : {&UIColor::label(), &UIColor::secondaryLabel()}) {
                auto back = background->components(appearance);
                auto fore = label->components(appearance);
                auto seen = luminance(back) + (luminance(fore) - luminance(back)) * fore.alpha;
                EXPECT_GT(std::abs(seen - luminance(back)), 0.35);
            }
        }
    }
}

} // namespace
} // namespace platform
