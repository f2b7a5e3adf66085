// SPDX-License-Identifier: MIT
#include "kit/foundation/almostEquals.h"
#include "kit/foundation/aspectRatio.h"
#include "kit/foundation/center.h"
#include "kit/foundation/clamped.h"
#include "kit/foundation/inset.h"
#include "kit/foundation/rounded.h"

#include <gtest/gtest.h>

namespace zelk {

using namespace platform;

TEST(GeometryTests, Values_are_almost_equal_up_to_and_with_the_tolerance)
{
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(almostEquals(1, 1.5, 0.5));
    EXPECT_FALSE(almostEquals(1.75, 1, 0.5));
    EXPECT_FALSE(almostEquals(1, 1, -1));
    EXPECT_FALSE(almostEquals(notANumber, notANumber, 1));
    EXPECT_FALSE(almostEquals(1, 1, notANumber));
}

TEST(GeometryTests, Clamping_goes_up_first_and_down_last)
{
    EXPECT_EQ(clamped(7, ClosedRange(1, 5)), 5);
    EXPECT_EQ(clamped(0, ClosedRange(1, 5)), 1);
    EXPECT_EQ(clamped(std::string("b"), ClosedRange<std::string>("a", "c")), "b");
    for (int value : {0, 7, 20})
        EXPECT_EQ(clamped(value, 10, 5), 5);
    EXPECT_DEATH(ClosedRange(5, 1), "lower bound");
}

TEST(GeometryTests, A_rectangle_around_a_point_has_it_as_its_centre)
{
    EXPECT_EQ(rect({10, 20}, {5, 8}), CGRect::make(7.5, 16, 5, 8));
    EXPECT_EQ(center(rect({10, 20}, {5, 8})), (CGPoint{10, 20}));
    EXPECT_EQ(aspectRatio({16, 8}), 2);
    EXPECT_EQ(aspectRatio({16, 0}), std::numeric_limits<double>::infinity());
}

TEST(GeometryTests, Insets_may_go_below_zero_and_inset_rectangles_vanish_instead)
{
    EXPECT_EQ(inset({10, 10}, {.top = 1, .left = 6, .bottom = 2, .right = 6}), (CGSize{-2, 7}));
    EXPECT_EQ(insetBy({10, 10}, 6, 1), (CGSize{0, 0}));
    EXPECT_EQ(insetBy({10, 10}, 5, 1), (CGSize{0, 8}));
    EXPECT_EQ(insetBy({10, 10}, -1, 0), (CGSize{12, 10}));
}

TEST(GeometryTests, Each_rule_rounds_halves_and_signs_its_own_way)
{
    struct Case {
        FloatingPointRoundingRule rule;
        CGSize half, small, odd; // of (2.5, -2.5), (0.4, -0.6) and (3.5, -0.5)
    };
    using enum FloatingPointRoundingRule;
    constexpr Case cases[] = {
        {toNearestOrAwayFromZero, {3, -3}, {0, -1}, {4, -1}},
        {toNearestOrEven, {2, -2}, {0, -1}, {4, 0}},
        {up, {3, -2}, {1, 0}, {4, 0}},
        {down, {2, -3}, {0, -1}, {3, -1}},
        {towardZero, {2, -2}, {0, 0}, {3, 0}},
        {awayFromZero, {3, -3}, {1, -1}, {4, -1}},
    };
    for (const auto& [rule, half, small, odd] : cases) {
        EXPECT_EQ(rounded(CGSize{2.5, -2.5}, rule), half) << static_cast<int>(rule);
        EXPECT_EQ(rounded(CGSize{0.4, -0.6}, rule), small) << static_cast<int>(rule);
        EXPECT_EQ(rounded(CGSize{3.5, -0.5}, rule), odd) << static_cast<int>(rule);
    }
    constexpr double big = 4503599627370497; // its halves are no doubles any more
    EXPECT_EQ(platform::rounded(big, toNearestOrEven), big);
}

} // namespace zelk
