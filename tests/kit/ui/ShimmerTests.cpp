// SPDX-License-Identifier: MIT
#include "kit/ui/shimmering.h"
#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::DeclarativeHarness;
using zelk::shimmering;

// Red, a hundred points wide and high, in all of the window.
auto square()
{
    return Color{UIColor::red()} | frame({.width = 100, .height = 100});
}

UITraitCollection traits(UIUserInterfaceLayoutDirection direction)
{
    return {.userInterfaceStyle = UIUserInterfaceStyle::dark, .layoutDirection = direction}; // over black
}

// How much of the red is seen there, 0 to 1.
double seenAt(DeclarativeHarness& harness, CGPoint place)
{
    return std::stoi(harness::colorAt(harness.snapshot(), place).substr(0, 2), nullptr, 16) / 255.0;
}

TEST(Shimmer, sweeps_from_the_leading_top_corner_to_the_trailing_bottom_one_for_ever)
{
    using enum UIUserInterfaceLayoutDirection;
    auto swept = shimmering(true, {.duration = 1, .delay = 0});
    // The band's middle goes from -0.15 to 1.15 of the diagonal, and is opaque there; 0.15 around it the content is dim.
    const struct {
        const char* name;
        zelk::ShimmeringModifier modifier;
        Duration time;
        double middle; // along the diagonal
    } cases[]{
        {"at first", swept, 0ms, -0.15},
        {"a quarter", swept, 250ms, 0.175},
        {"half way", swept, 500ms, 0.5},
        {"the third time", swept, 2750ms, 0.825},
        {"after an hour", swept, 3600s + 500ms, 0.5},
        {"in the delay", shimmering(), 200ms, -0.15},
        {"by default", shimmering(), 1000ms, 0.5},
        {"on the way back", shimmering(true, {.duration = 1, .bounce = true, .delay = 0}), 1750ms, 0.175}};
    for (auto direction : {leftToRight, rightToLeft}) {
        for (auto& each : cases) {
            SCOPED_TRACE(each.name);
            DeclarativeHarness harness({100, 100}, traits(direction));
            harness.show(square() | each.modifier);
            harness.advance(each.time);
            auto at = [&](double place) {
                auto y = std::clamp(place * 100, 0.0, 99.0);
                return seenAt(harness, {direction == leftToRight ? y : 99 - y, y});
            };
            if (each.middle > 0) {
                EXPECT_GT(at(each.middle), 0.9);
            }
            EXPECT_NEAR(at(each.middle + 0.15), 0.3, 0.06);
            EXPECT_NEAR(at(each.middle - 0.15), 0.3, 0.06);
        }
    }
}

TEST(Shimmer, is_as_large_as_its_content_from_the_first_moment)
{
    auto inkOf = [](auto view) {
        DeclarativeHarness harness(
            {400, 100}, {.preferredContentSizeCategory = UIContentSizeCategory::accessibilityLarge});
        harness.show(std::move(view)); // by now its text is larger than when it came
        harness.advance(2900ms);
        return harness::inkBounds(harness.snapshot());
    };
    auto text = Text{"Slide to unlock"} | font(Font::title());
    EXPECT_EQ(inkOf(text | shimmering(true, {.duration = 1.2, .bounce = true})), inkOf(text));
}

TEST(Shimmer, that_is_not_active_leaves_the_content_as_it_is_and_switching_makes_both_anew)
{
    struct Counter {
        State<int> taps{0};
        auto dynamicProperties() { return std::tie(taps); }
        auto body() const
        {
            return Button{std::to_string(taps.get()), [taps = taps] { taps.set(*taps + 1); }};
        }
    };
    auto root = [](bool active) { return Counter{} | shimmering(active, {.duration = 1, .delay = 0}); };
    auto picture = [](auto view) {
        DeclarativeHarness harness;
        harness.show(std::move(view));
        return harness.snapshot();
    };
    EXPECT_EQ(harness::differenceOf(picture(root(false)), picture(Counter{})), 0);
    DeclarativeHarness harness;
    auto controller = harness.show(root(false));
    harness.find(AccessibilityRole::button, "0").tap();
    harness.find(AccessibilityRole::button, "1");
    controller->setRootView(root(true));
    harness.settle();
    harness.find(AccessibilityRole::button, "0").tap();
    EXPECT_EQ(harness.find(AccessibilityRole::button).label(), "1") << "what shimmers can be touched";
}

TEST(Shimmer, costs_nothing_while_it_is_not_seen_and_goes_on_where_it_would_be)
{
    const struct {
        const char* name;
        std::function<AnyView(bool hidden)> describe;
    } cases[]{
        {"clear", [](bool hidden) { return AnyView{square() | shimmering() | opacity(hidden ? 0 : 1)}; }},
        {"covered",
         [](bool hidden) {
             return AnyView{square() | shimmering()
                            | overlay(Color{hidden ? UIColor::blue() : UIColor::clear()})};
         }},
        {"clipped away",
         [](bool hidden) {
             return AnyView{square() | shimmering() | offset({.x = hidden ? 500.0 : 0.0}) | clipped()};
         }},
        {"outside of the window",
         [](bool hidden) { return AnyView{square() | shimmering() | offset({.x = hidden ? 500.0 : 0.0})}; }},
    };
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        DeclarativeHarness harness({100, 100}, traits(UIUserInterfaceLayoutDirection::leftToRight));
        auto controller = harness.show(each.describe(false));
        EXPECT_GT(harness.playFrames(500ms).painted, 10);
        controller->setRootView(each.describe(true));
        harness.playFrames(100ms);
        EXPECT_FALSE(DisplayLink::shared().isRunning());
        EXPECT_FALSE(RunLoop::main().nextDeadline()) << "nothing is waiting to happen";
        EXPECT_EQ(harness.playFrames(8400ms).painted, 0);
        controller->setRootView(each.describe(false));
        harness.playFrames(750ms); // 9.75 seconds in all: half way in the sixth cycle
        EXPECT_TRUE(DisplayLink::shared().isRunning());
        EXPECT_GT(seenAt(harness, {50, 50}), 0.85);
    }
}

TEST(Shimmer, stands_still_where_motion_is_reduced_and_begins_anew_when_its_direction_changes)
{
    auto still = traits(UIUserInterfaceLayoutDirection::leftToRight);
    still.prefersReducedMotion = true;
    DeclarativeHarness harness({100, 100}, still);
    harness.show(square() | shimmering(true, {.duration = 1, .delay = 0}));
    EXPECT_LE(harness.playFrames(2s).painted, 1);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    EXPECT_NEAR(seenAt(harness, {50, 50}), 0.3, 0.02);

    harness.changeTraits([](auto& now) { now.prefersReducedMotion = false; });
    harness.playFrames(500ms);
    EXPECT_GT(seenAt(harness, {50, 50}), 0.9) << "half way";
    harness.changeTraits(
        [](auto& now) { now.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft; });
    harness.playFrames(250ms);
    EXPECT_GT(seenAt(harness, {82, 17}), 0.85);
    harness.changeTraits([](auto& now) { now.prefersReducedMotion = true; });
    harness.playFrames(100ms);
    EXPECT_FALSE(DisplayLink::shared().isRunning());
    EXPECT_NEAR(seenAt(harness, {82, 17}), 0.3, 0.02);
}

} // namespace
