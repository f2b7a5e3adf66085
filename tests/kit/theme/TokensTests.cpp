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
#define ON_SCALE(family, base, step) EXPECT_EQ(family::_##step, step / 100.0 * base) << #family " " #step
#define FOUR(family, base, a, b, c, d)                                                                       \
    ON_SCALE(family, base, a);                                                                               \
    ON_SCALE(family, base, b);                                                                               \
    ON_SCALE(family, base, c);                                                                               \
    ON_SCALE(family, base, d)
    FOUR(Spacing, 8, 25, 50, 75, 100);
    FOUR(Spacing, 8, 150, 200, 250, 300);
    FOUR(Spacing, 8, 325, 400, 600, 25);
    FOUR(GridSize, 16, 50, 100, 150, 200);
    FOUR(GridSize, 16, 250, 275, 300, 350);
    FOUR(GridSize, 16, 400, 450, 500, 550);
    FOUR(GridSize, 16, 600, 650, 750, 1000);
    FOUR(GridSize, 16, 1100, 2000, 2200, 50);
    FOUR(CornerRadius, 8, 50, 100, 150, 200);
    FOUR(CornerRadius, 8, 250, 300, 350, 50);
    FOUR(Opacity, 1, 0, 25, 50, 75);
    ON_SCALE(Opacity, 1, 100);
#undef FOUR
#undef ON_SCALE
    EXPECT_EQ(Spacing::_800, 76);
    EXPECT_EQ(AnimationPreset::fast(), platform::Animation::easeInOut(0.1));
    EXPECT_EQ(AnimationPreset::medium(), platform::Animation::easeInOut(0.2));
    EXPECT_EQ(AnimationPreset::slow(), platform::Animation::easeInOut(0.25));
}

} // namespace
} // namespace zelk
