// SPDX-License-Identifier: MIT
// The example of docs/testing.md, and what the harness itself promises.
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::DeclarativeHarness;
using enum AccessibilityRole;

// [example]
struct Counter {
    State<int> count = 0;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        auto binding = count.binding();
        return VStack{Text{"Count: " + std::to_string(*count)},
                      Button{"Add", [binding] { binding.set(binding.get() + 1); }},
                      Button{"Later", [] {}} | disabled()};
    }
};

TEST(Counter, adds_one_for_each_press_and_describes_itself_once)
{
    DeclarativeHarness harness({320, 200}, {.userInterfaceStyle = UIUserInterfaceStyle::dark});
    harness.show(Counter{});
    auto work = harness.workDuring([&] { harness.find(button, "Add").tap(); });
    EXPECT_TRUE(harness.tryFind(staticText, "Count: 1"));
    EXPECT_EQ(work.bodies, 1);
    EXPECT_FALSE(harness.find(button, "Later").isEnabled());
}
// [/]

TEST(Harness, says_what_there_is_when_what_a_test_looks_for_is_not_there)
{
    DeclarativeHarness harness({320, 200});
    harness.show(Counter{});
    EXPECT_DEATH(harness.find(slider, "Volume"),
                 "the one slider \"Volume\" and finds 0(.|\n)*button \"Add\"");
    EXPECT_DEATH(harness.find(button), "finds 2");
    EXPECT_EQ(harness.describe(),
              "staticText \"Count: 0\"\nbutton \"Add\"\n  staticText \"Add\"\n"
              "button \"Later\" (disabled)\n  staticText \"Later\"\n");
}

TEST(Harness, does_not_reach_what_is_covered_or_out_of_sight)
{
    DeclarativeHarness harness({320, 200});
    harness.show(Counter{} | overlay(Color{UIColor::red()} | onTapGesture([] { })));
    EXPECT_DEATH(harness.find(button, "Add").tap(), "is covered");
    harness.show(Counter{} | offset({.x = 400}));
    EXPECT_DEATH(harness.find(button, "Add").tap(), "is out of sight");
}

TEST(Harness, says_where_a_moving_element_is_seen_and_taps_where_it_goes)
{
    auto place = std::make_shared<StateCell<double>>(0);
    int taps = 0;
    struct Moving {
        Binding<double> place;
        std::function<void()> action;
        auto dynamicProperties() { return std::tie(place); }
        auto body() const { return VStack{Button{"Go", action}} | opacity(0.9) | offset({.x = place.get()}); }
    };
    DeclarativeHarness harness({400, 200});
    harness.show(Moving{Binding(place), [&] { ++taps; }});
    auto start = harness.find(button, "Go").frame().minX();
    withAnimation(Animation::linear(1), [&] { place->set(100); });
    harness.advance(500ms);
    EXPECT_NEAR(harness.find(button, "Go").frame().minX(), start + 50, 3);
    EXPECT_NEAR(harness.find(button, "Go").visibleFrame().minX(), start + 50, 3);
    harness.find(button, "Go").tap();
    EXPECT_EQ(taps, 1);
    harness.advance(1s);
    EXPECT_EQ(harness.find(button, "Go").frame().minX(), start + 100);
}

TEST(Harness, counts_the_frames_that_paint_anything)
{
    DeclarativeHarness harness({320, 200});
    harness.show(Counter{});
    harness.playFrames(100ms);
    EXPECT_EQ(harness.playFrames(1s).painted, 0); // nothing moves: nothing is painted
    harness.find(button, "Add").tap();
    auto frames = harness.playFrames(1s);
    EXPECT_GT(frames.painted, 0);
    EXPECT_LT(frames.area, 320 * 200);
}

TEST(Pixels, say_where_ink_is_and_of_which_colour)
{
    DeclarativeHarness harness({40, 20}, {.displayScale = 2});
    harness.show(Color{UIColor::white()}
                 | overlay(Color{UIColor::red()} | frame({.width = 10, .height = 6}), Alignment::topLeading())
                 | frame({.width = 40, .height = 20}));
    auto picture = harness.snapshot();
    EXPECT_EQ(harness::inkBounds(harness::mirrored(picture)), CGRect::make(30, 0, 10, 6));
    EXPECT_EQ(harness::averageColor(picture, CGRect::make(0, 0, 20, 6)), "ff8080");
    EXPECT_EQ(harness::shareOf(picture, "ff0000", CGRect::make(0, 0, 40, 6)), 0.25);
    EXPECT_EQ(harness::differenceOf(picture, harness::mirrored(picture)), 2 * 60.0 / 800);
}

} // namespace
