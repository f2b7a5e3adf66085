// SPDX-License-Identifier: MIT
#include "platform/graphics/CGColor.h"
#include "platform/graphics/CIColor.h"
#include "tests/platform/graphics/Painting.h"

#include <thread>

namespace platform {
namespace {

constexpr ColorAppearance dark{.isDark = true};

std::optional<ColorComponents> redGreenBlueAlpha(const UIColor& color)
{
    ColorComponents read{-1, -1, -1, -1};
    bool isRead = color.getRed(&read.red, &read.green, &read.blue, &read.alpha);
    EXPECT_EQ(isRead, read != ColorComponents(-1, -1, -1, -1)) << "a refusal writes nothing";
    return isRead ? std::optional(read) : std::nullopt;
}

// Left half red, right half clear; two points wide at two pixels a point.
UIImage halfRed()
{
    return painted({2, 1}, 2, [](CGContext& context) { context.fill({{0, 0}, {1, 1}}, UIColor::red()); });
}

TEST(CGColorTests, aDynamicColorIsReadInTheCurrentAppearanceOfTheThread)
{
    auto color = UIColor::dynamic(UIColor::red(), UIColor::green());
    EXPECT_EQ(redGreenBlueAlpha(color), ColorComponents(1, 0, 0, 1));
    {
        CurrentAppearance current(dark);
        EXPECT_EQ(redGreenBlueAlpha(color), ColorComponents(0, 1, 0, 1));
        EXPECT_EQ(CIColor(color).green(), 1);
        EXPECT_EQ(UIColor(color.cgColor()), UIColor::green());
        {
            CurrentAppearance inner(ColorAppearance{});
            EXPECT_EQ(CIColor(color).red(), 1);
        }
        EXPECT_EQ(CIColor(color).red(), 0) << "the outer one is back";
        std::jthread([&] { EXPECT_EQ(CIColor(color).red(), 1) << "another thread has its own"; });
    }
    setProcessAppearance(dark);
    EXPECT_EQ(CIColor(color).green(), 1);
    setProcessAppearance({});
    EXPECT_EQ(CIColor(color).green(), 0);
    EXPECT_TRUE(color.getRed(nullptr, nullptr, nullptr, nullptr)) << "nobody has to take all four";
}

TEST(CGColorTests, colorsOfOtherSpacesBecomeSRGB)
{
    EXPECT_EQ(UIColor(CGColor::gray(0.25, 0.5)), UIColor(0.25, 0.25, 0.25, 0.5));
    EXPECT_EQ(CGColor::gray(0.25, 0.5).components().size(), 2U);
    auto green = UIColor(CGColor::displayP3(0, 1, 0, 0.5)).components();
    EXPECT_NEAR(green.red, -0.5116, 0.001);
    EXPECT_NEAR(green.green, 1.0183, 0.001);
    EXPECT_NEAR(green.blue, -0.3107, 0.001);
    EXPECT_EQ(green.alpha, 0.5);
    EXPECT_NE(CGColor::sRGB(1, 0, 0), CGColor::displayP3(1, 0, 0));
}

TEST(CGColorTests, aPatternTilesAndIsNoRedGreenBlue)
{
    auto pattern = UIColor::pattern(halfRed());
    EXPECT_FALSE(redGreenBlueAlpha(pattern));
    EXPECT_FALSE(pattern.cgColor().inSRGB());
    EXPECT_EQ(UIColor(pattern.cgColor()), pattern);
    EXPECT_EQ(pattern.resolved(dark), pattern);
    EXPECT_NE(pattern, UIColor(pattern.components())) << "its mean is another colour";
    EXPECT_EQ(pattern.components(), ColorComponents(1, 0, 0, 0.5)) << "clear pixels add no hue";
    EXPECT_EQ(UIColor::pattern({}).components().alpha, 0);
    EXPECT_EQ(UIColor::red().blended(pattern, 1), pattern);

    auto tiled = painted({6, 2}, 1, [&](CGContext& context) {
        context.translate(1, 0);
        context.fill({{0, 0}, {4, 1}}, pattern);
        context.fill(UIBezierPath::rect({{0, 1}, {4, 1}}), pattern.withAlphaComponent(0.5));
    });
    const int columns[]{0, 255, 0, 255, 0, 0};
    for (int x = 0; x < 6; ++x) {
        EXPECT_NEAR(alphaAt(tiled, x, 0), columns[x], 2) << x;
        EXPECT_NEAR(alphaAt(tiled, x, 1), columns[x] / 2, 2) << x;
    }
}

} // namespace
} // namespace platform
