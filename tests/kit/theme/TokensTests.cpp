// SPDX-License-Identifier: MIT
#include "kit/theme/AnimationPreset.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Opacity.h"
#include "kit/theme/Spacing.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

// A token's name is its step: a mistyped number is off the scale.
TEST(TokensTests, everyTokenButOneStandsOnItsScale)
{
    struct Case {
        const char* family;
        double step, base, value;
    };
#define TOKEN(family, base, hundredths) {#family, hundredths / 100.0, base, family::_##hundredths}
    constexpr Case cases[]{
        TOKEN(Spacing, 8, 25),       TOKEN(Spacing, 8, 50),       TOKEN(Spacing, 8, 75),
        TOKEN(Spacing, 8, 100),      TOKEN(Spacing, 8, 150),      TOKEN(Spacing, 8, 200),
        TOKEN(Spacing, 8, 250),      TOKEN(Spacing, 8, 300),      TOKEN(Spacing, 8, 325),
        TOKEN(Spacing, 8, 400),      TOKEN(Spacing, 8, 600),      TOKEN(GridSize, 16, 50),
        TOKEN(GridSize, 16, 100),    TOKEN(GridSize, 16, 150),    TOKEN(GridSize, 16, 200),
        TOKEN(GridSize, 16, 250),    TOKEN(GridSize, 16, 275),    TOKEN(GridSize, 16, 300),
        TOKEN(GridSize, 16, 350),    TOKEN(GridSize, 16, 400),    TOKEN(GridSize, 16, 450),
        TOKEN(GridSize, 16, 500),    TOKEN(GridSize, 16, 550),    TOKEN(GridSize, 16, 600),
        TOKEN(GridSize, 16, 650),    TOKEN(GridSize, 16, 750),    TOKEN(GridSize, 16, 1000),
        TOKEN(GridSize, 16, 1100),   TOKEN(GridSize, 16, 2000),   TOKEN(GridSize, 16, 2200),
        TOKEN(CornerRadius, 8, 50),  TOKEN(CornerRadius, 8, 100), TOKEN(CornerRadius, 8, 150),
        TOKEN(CornerRadius, 8, 200), TOKEN(CornerRadius, 8, 250), TOKEN(CornerRadius, 8, 300),
        TOKEN(CornerRadius, 8, 350), TOKEN(Opacity, 1, 0),        TOKEN(Opacity, 1, 25),
        TOKEN(Opacity, 1, 50),       TOKEN(Opacity, 1, 75),       TOKEN(Opacity, 1, 100),
    };
#undef TOKEN
    for (const auto& each : cases)
        EXPECT_EQ(each.value, each.step * each.base) << each.family << " " << each.step;
    EXPECT_EQ(Spacing::_800, 76);
}

TEST(TokensTests, presetsEaseInAndOut)
{
    using platform::Animation;
    EXPECT_EQ(AnimationPreset::fast(), Animation::easeInOut(0.1));
    EXPECT_EQ(AnimationPreset::medium(), Animation::easeInOut(0.2));
    EXPECT_EQ(AnimationPreset::slow(), Animation::easeInOut(0.25));
}

} // namespace
} // namespace zelk
