// SPDX-License-Identifier: MIT
#include "platform/dispatch/DisplayLink.h"
#include "platform/swiftui/swiftui.h"
#include "tests/platform/swiftui/probes.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using namespace std::chrono_literals;
using harness::colorAt;

const std::string red = "ff0000", green = "00ff00", blue = "0000ff";

template <View Root>
UIImage pictureOf(Root root, CGSize size = {40, 40})
{
    Shown harness(size, std::move(root));
    return harness.snapshot();
}

TEST(Shape, covers_its_outline_only)
{
    struct Case {
        std::string_view name;
        UIImage picture;
        bool corner, edge, middle;
    };
    auto paint = fill(UIColor::red());
    const Case cases[] = {
        {"a rectangle", pictureOf(Rectangle{} | paint), true, true, true},
        {"a circle", pictureOf(Circle{} | paint), false, true, true},
        {"an ellipse", pictureOf(Ellipse{} | paint), false, true, true},
        {"a capsule", pictureOf(Capsule{} | paint), false, true, true},
        {"rounded corners", pictureOf(RoundedRectangle{10} | paint), false, true, true},
        {"corners rounded by less than nothing", pictureOf(RoundedRectangle{-3} | paint), true, true, true},
        {"a line around", pictureOf(Rectangle{} | stroke(UIColor::red(), 6)), true, true, false},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(colorAt(test.picture, {1, 1}) == red, test.corner);
        EXPECT_EQ(colorAt(test.picture, {20, 1}) == red, test.edge);
        EXPECT_EQ(colorAt(test.picture, {20, 20}) == red, test.middle);
    }
}

TEST(Shape, paints_the_half_of_a_line_that_lies_outside_of_its_place)
{
    auto handle = makeHandle<double>();
    Shown harness({40, 40}, stateful(handle, 6.0, [](double width) {
                      return Rectangle{} | stroke(UIColor::red(), width) | frame({.width = 20, .height = 20});
                  }));
    EXPECT_EQ(colorAt(harness.snapshot(), {8, 8}), red);
    EXPECT_NE(colorAt(harness.snapshot(), {5, 20}), red);
    harness.set(handle, 14.0);
    EXPECT_EQ(colorAt(harness.snapshot(), {4, 20}), red) << "a wider line has the room it needs";
}

TEST(Shape, without_a_colour_takes_that_of_the_surroundings)
{
    auto handle = makeHandle<bool>();
    Shown harness({40, 40}, stateful(handle, false, [](bool isBlue) {
                      return Rectangle{} | foregroundColor(isBlue ? UIColor::blue() : UIColor::red());
                  }));
    EXPECT_EQ(colorAt(harness.snapshot(), {20, 20}), red);
    (*handle)->set(true);
    EXPECT_EQ(colorAt(harness.snapshot(), {20, 20}), blue);
}

TEST(Circle, stands_in_the_middle_of_a_long_place)
{
    auto picture = pictureOf(Circle{} | fill(UIColor::red()), {100, 40});
    EXPECT_NE(colorAt(picture, {25, 20}), red);
    EXPECT_EQ(colorAt(picture, {35, 20}), red);
    EXPECT_NE(colorAt(picture, {75, 20}), red);
}

// As much of a place, from the left, as it says.
struct Bar {
    double part = 0;
    UIBezierPath path(CGRect rect) const
    {
        return UIBezierPath::rect(CGRect::make(0, 0, rect.width() * part, rect.height()));
    }
    std::vector<double> animatableData() const { return {part}; }
    void setAnimatableData(const std::vector<double>& data) { part = data.front(); }
    bool operator==(const Bar&) const = default;
};

TEST(Shape, moves_its_numbers_and_its_colour_in_an_animation)
{
    auto handle = makeHandle<bool>();
    Shown harness({100, 10}, stateful(handle, false, [](bool isLong) {
                      return Bar{isLong ? 1.0 : 0.0} | fill(isLong ? UIColor::green() : UIColor::red());
                  }));
    withAnimation(Animation::linear(1), [&] { (*handle)->set(true); });
    harness.settle();
    harness.advance(500ms);
    auto halfway = harness.snapshot();
    EXPECT_EQ(colorAt(halfway, {70, 5}), "ffffff");
    auto [r, g, b, alpha] = halfway.pixel(40, 5).components();
    EXPECT_NEAR(r, 0.5, 0.05);
    EXPECT_NEAR(g, 0.5, 0.05);
    harness.advance(600ms);
    auto after = harness.snapshot();
    EXPECT_EQ(colorAt(after, {5, 5}), green);
    EXPECT_EQ(colorAt(after, {95, 5}), green);
    EXPECT_FALSE(DisplayLink::shared().isRunning()) << "nothing runs when nothing moves";
}

TEST(Shape, that_goes_while_it_moves_leaves_nothing_running)
{
    auto handle = makeHandle<double>();
    {
        Shown harness({100, 10}, stateful(handle, 0.0, [](double part) { return Bar{part} | fill(); }));
        withAnimation(Animation::linear(1), [&] { (*handle)->set(1); });
        harness.settle();
        auto view = harness.controller->view()->subviews().front();
        harness.dropWindow();
        harness.controller.reset();
        harness.advance(2s);
        view->setNeedsDisplay(); // somebody kept it
    }
}

TEST(LinearGradient, runs_between_its_points)
{
    auto picture = pictureOf(LinearGradient::ofColors({UIColor::red(), UIColor::blue()}, UnitPoint::leading(),
                                                      UnitPoint::trailing()),
                             {100, 10});
    auto part = [&](int x) { return picture.pixel(x, 5).components().blue; };
    EXPECT_NEAR(part(0), 0, 0.02);
    EXPECT_NEAR(part(50), 0.5, 0.02);
    EXPECT_NEAR(part(99), 1, 0.02);
}

TEST(LinearGradient, without_stops_or_length_paints_what_there_is)
{
    EXPECT_EQ(colorAt(pictureOf(LinearGradient{}), {5, 5}), "ffffff");
    EXPECT_EQ(colorAt(pictureOf(LinearGradient::ofColors({UIColor::red()})), {5, 5}), red);
    EXPECT_EQ(colorAt(pictureOf(LinearGradient::ofColors({UIColor::red(), UIColor::blue()},
                                                         UnitPoint::center(), UnitPoint::center())),
                      {5, 5}),
              blue);
}

// A mask that is a gradient is painted in one step. It must look as any other mask does.

TEST(GradientMask, looks_as_the_same_mask_with_a_picture_of_its_own)
{
    auto gradient = [](std::vector<double> alphas, UnitPoint end = {0.8, 1}) {
        std::vector<UIColor> colors;
        for (auto alpha : alphas)
            colors.push_back(UIColor::gray(0, alpha));
        return LinearGradient::ofColors(colors, {0.1, 0}, end);
    };
    auto content = Text{"Masked"} | padding(10) | background(Circle{} | fill(UIColor::systemRed()))
        | frame({.width = 80.5, .height = 60.25});
    struct Pair {
        AnyView simple, clipped; // the second is painted by itself first
    };
    auto masked = [&](auto mask) {
        return Pair{AnyView{content | platform::mask(mask)},
                    AnyView{content | platform::mask(mask | platform::clipped())}};
    };
    const struct {
        const char* name;
        Pair pair;
    } cases[]{{"dim, bright, dim", masked(gradient({0.3, 1, 0.3}))},
              {"no colours at all", masked(gradient({}))},
              {"both ends in one place", masked(gradient({1, 0.5}, {0.1, 0}))},
              {"smaller than the content", masked(gradient({1, 0}) | frame({.width = 40, .height = 30}))},
              {"turned", masked(gradient({0, 1}) | scaleEffect(1.8) | rotationEffect(Angle{0.4}))}};
    for (auto [scale, turn] : {std::pair{1.0, Angle{}}, {2.0, Angle{}}, {1.5, Angle{0.2}}}) {
        for (auto& each : cases) {
            auto picture = [&](bool isSimple) {
                harness::DeclarativeHarness harness({120, 120}, {.displayScale = scale});
                harness.show((isSimple ? each.pair.simple : each.pair.clipped) | opacity(0.7)
                             | rotationEffect(turn) | offset({.x = 7.3}));
                return harness.snapshot();
            };
            EXPECT_LT(harness::differenceOf(picture(true), picture(false), 6), 0.01)
                << each.name << " at " << scale;
        }
    }
}

} // namespace
