// SPDX-License-Identifier: MIT
#include "platform/graphics/UIBezierPath.h"

#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

#include <numbers>

namespace platform {
namespace {

constexpr auto pi = std::numbers::pi;

void expectNear(const CGRect& a, const CGRect& b, double tolerance = 0.01)
{
    EXPECT_NEAR(a.minX(), b.minX(), tolerance);
    EXPECT_NEAR(a.minY(), b.minY(), tolerance);
    EXPECT_NEAR(a.maxX(), b.maxX(), tolerance);
    EXPECT_NEAR(a.maxY(), b.maxY(), tolerance);
}

TEST(UIBezierPathTests, onlyTheListedCornersAreRounded)
{
    struct Case {
        UIRectCorner corners;
        bool topLeft, topRight, bottomLeft, bottomRight; // whether the corner point is still inside
    };
    constexpr Case cases[]{
        {UIRectCorner::none, true, true, true, true},
        {UIRectCorner::bottomLeft, true, true, false, true},
        {UIRectCorner::topLeft | UIRectCorner::topRight, false, false, true, true},
        {UIRectCorner::allCorners, false, false, false, false},
    };
    for (auto& row : cases) {
        SCOPED_TRACE(static_cast<unsigned>(row.corners));
        auto path = UIBezierPath::roundedRect(CGRect::make(10, 20, 40, 30), 10, row.corners);
        EXPECT_EQ(path.contains({11, 21}), row.topLeft);
        EXPECT_EQ(path.contains({49, 21}), row.topRight);
        EXPECT_EQ(path.contains({11, 49}), row.bottomLeft);
        EXPECT_EQ(path.contains({49, 49}), row.bottomRight);
        expectNear(path.bounds(), CGRect::make(10, 20, 40, 30));
    }
}

TEST(UIBezierPathTests, aRadiusBeyondHalfTheSideMakesACapsule)
{
    auto capsule = UIBezierPath::roundedRect(CGRect::make(0, 0, 40, 20), 1000);
    EXPECT_EQ(capsule, UIBezierPath::roundedRect(CGRect::make(0, 0, 40, 20), 10));
    EXPECT_TRUE(capsule.contains({20, 1}));
    EXPECT_FALSE(capsule.contains({2, 2}));
}

TEST(UIBezierPathTests, boundsFollowTheCurveAndNotItsControlPoints)
{
    UIBezierPath path;
    path.addQuad({10, 0}, {5, 10});
    expectNear(path.bounds(), CGRect::make(0, 0, 10, 5));
    auto transform = CGAffineTransform::scale(2, 1).concatenating(CGAffineTransform::translation(5, 7));
    expectNear(path.transformed(transform).bounds(), CGRect::make(5, 7, 20, 5));
    EXPECT_TRUE(UIBezierPath().bounds().isNull());
}

TEST(UIBezierPathTests, anArcGoesRoundInItsDirection)
{
    struct Case {
        const char* name;
        double start, end;
        ArcDirection direction;
        CGRect bounds;
    };
    using enum ArcDirection;
    const auto circle = CGRect::make(-10, -10, 20, 20);
    const Case cases[]{
        {"a quarter clockwise is the lower right", 0, pi / 2, clockwise, CGRect::make(0, 0, 10, 10)},
        {"the other way round it is the rest", 0, pi / 2, counterclockwise, circle},
        {"an end before the start goes on over zero", pi / 2, 0, clockwise, circle},
        {"the upper half", 0, -pi, counterclockwise, CGRect::make(-10, -10, 20, 10)},
        {"more than a turn is the whole circle", 0, 5 * pi, clockwise, circle},
        {"nothing is a point", 1, 1, clockwise, CGRect::make(10 * std::cos(1.0), 10 * std::sin(1.0), 0, 0)},
    };
    for (auto& row : cases) {
        SCOPED_TRACE(row.name);
        UIBezierPath path;
        path.addArc({0, 0}, 10, row.start, row.end, row.direction);
        expectNear(path.bounds(), row.bounds, 0.05);
    }
}

TEST(UIBezierPathTests, theEvenOddRuleLeavesAHole)
{
    auto ring = UIBezierPath::rect(CGRect::make(0, 0, 30, 30));
    ring.append(UIBezierPath::rect(CGRect::make(10, 10, 10, 10)));
    EXPECT_TRUE(ring.contains({15, 15}, FillRule::nonZero));
    EXPECT_FALSE(ring.contains({15, 15}, FillRule::evenOdd));
}

TEST(UIBezierPathTests, elementsOfAnEmptyPathBeginAtTheOriginAndClosingReturns)
{
    UIBezierPath path;
    path.close();
    EXPECT_TRUE(path.isEmpty());
    path.addLine({5, 0});
    path.addLine({5, 5});
    path.close();
    EXPECT_EQ(path.currentPoint(), CGPoint{});
    EXPECT_TRUE(path.contains({4, 1}));
    path.append(path);
    EXPECT_EQ(path.elements().size(), 8U);
}

} // namespace
} // namespace platform
