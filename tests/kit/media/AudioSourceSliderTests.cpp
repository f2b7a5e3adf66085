// SPDX-License-Identifier: MIT
#include "kit/media/AudioSourceSlider.h"

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/State.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

using namespace platform;
using enum AccessibilityRole;
using harness::DeclarativeHarness;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(AudioSourceSlider, says_what_has_passed_and_what_remains)
{
    const CMTime minute{60, 1}, tenHours{36'000, 1};
    struct Case {
        std::string_view name;
        double value;
        std::optional<CMTime> duration;
        std::string elapsed, remaining;
    };
    const Case cases[] = {
        {"at the beginning", 0, minute, "00:00", "-01:00"},
        {"in the middle", 0.25, minute, "00:15", "-00:45"},
        {"at the end", 1, minute, "01:00", "-00:00"},
        {"under an hour", 0.5, CMTime{3599, 1}, "29:59", "-29:59"},
        {"both show the hour of an hour", 0, CMTime{3600, 1}, "00:00:00", "-01:00:00"},
        {"ten hours", 0.5, tenHours, "05:00:00", "-05:00:00"},
        {"parts of a second are cut off", 0.5, CMTime{1001, 1000}, "00:00", "-00:00"},
        {"unknown", 0.5, std::nullopt, "00:00", "-00:00"},
        {"nothing", 0.5, CMTime::zero(), "00:00", "-00:00"},
        {"indefinite", 0.5, CMTime::indefinite(), "00:00", "-00:00"},
        {"endless", 0.5, CMTime::positiveInfinity(), "00:00", "-00:00"},
        {"invalid", 0.5, CMTime::invalid(), "00:00", "-00:00"},
        {"too long for a clock", 0.5, CMTime{std::numeric_limits<std::int64_t>::max(), 1}, "00:00", "-00:00"},
        {"nowhere", notANumber, minute, "", "-"},
    };
    for (auto& [name, value, duration, elapsed, remaining] : cases) {
        EXPECT_EQ(elapsedTimeText(value, duration), elapsed) << name;
        EXPECT_EQ(remainingTimeText(value, duration), remaining) << name;
    }
}

// Its owner, in a window of 332 points: the groove is 300 wide and begins at 16, its thumb's middle 4 points on.
struct Stage {
    double value = 0.5;
    bool isPlaying = false;
    std::string log; // of isPlaying
    DeclarativeHarness harness;

    explicit Stage(bool plays, std::optional<CMTime> duration = CMTime{100, 1},
                   const UITraitCollection& traits = {})
        : isPlaying(plays)
        , harness({332, 80}, traits)
    {
        auto playing = Binding<bool>([this] { return isPlaying; },
                                     [this](bool wish) {
                                         if (std::exchange(isPlaying, wish) != wish)
                                             log += wish ? "plays " : "pauses ";
                                     });
        auto position = Binding<double>([this] { return value; }, [this](double wish) { value = wish; });
        harness.show(AudioSourceSlider{position, duration, playing, Color{UIColor(1, 0, 0)}});
    }
    CGFloat y() { return harness.find(slider).frame().midY(); }
};

TEST(AudioSourceSlider, puts_the_value_where_it_is_dragged)
{
    const std::tuple<std::string_view, CGFloat, double> cases[] = {
        {"the middle", 16 + 4 + 150, 0.5}, {"the thumb's own place at the end", 16 + 4 + 300, 1},
        {"the beginning", 20, 0},          {"before it", 3, 0},
        {"far before it", -1e6, 0},        {"past the end", 328, 1},
        {"far past the end", 1e6, 1},      {"a third", 120, 1.0 / 3},
    };
    for (auto direction :
         {UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft}) {
        for (auto& [name, x, value] : cases) {
            Stage stage(false, CMTime{100, 1}, {.layoutDirection = direction});
            stage.harness.drag({100, stage.y()}, {x, stage.y()});
            EXPECT_NEAR(stage.value, value, 1e-12) << name;
        }
    }
}

TEST(AudioSourceSlider, pauses_while_it_is_dragged_and_goes_on_however_that_ends)
{
    using Act = std::function<void(Stage&)>;
    const std::tuple<std::string_view, bool, Act, std::string> cases[] = {
        {"let go", true, [](auto& s) { s.harness.moveTo({200, 90}), s.harness.up(); }, "pauses plays "},
        {"a press alone", true, [](auto& s) { s.harness.up(); }, "pauses plays "},
        {"taken away", true, [](auto& s) { s.harness.cancel(); }, "pauses plays "},
        {"it did not play", false, [](auto& s) { s.harness.moveTo({200, 90}), s.harness.up(); }, ""},
        {"again", true, [](auto& s) { s.harness.up(), s.harness.tap({60, s.y()}); },
         "pauses plays pauses plays "},
        {"the player starts by itself", true,
         [](auto& s) { s.isPlaying = true, s.harness.moveTo({200, 90}), s.harness.up(); },
         "pauses pauses plays "},
    };
    for (auto& [name, plays, act, log] : cases) {
        Stage stage(plays);
        stage.harness.down({100, stage.y()});
        EXPECT_FALSE(stage.isPlaying) << name;
        EXPECT_NEAR(stage.value, 80.0 / 300, 1e-12) << name << ": the drag begins with the press";
        act(stage);
        EXPECT_EQ(stage.log, log) << name;
        EXPECT_EQ(stage.isPlaying, plays) << name;
    }
}

TEST(AudioSourceSlider, measures_itself_anew_when_its_size_changes)
{
    Stage stage(false);
    stage.harness.resize({632, 80});
    stage.harness.settle();
    stage.harness.tap({16 + 4 + 300, stage.y()});
    EXPECT_NEAR(stage.value, 0.5, 1e-12);
    stage.harness.resize({20, 80}); // no room for the groove
    stage.harness.settle();
    stage.harness.tap({10, stage.y()});
    EXPECT_TRUE(stage.value == 0 || stage.value == 1 || std::isnan(stage.value));
}

TEST(AudioSourceSlider, is_a_slider_to_the_keyboard_and_to_assistive_technology)
{
    const std::tuple<std::string_view, std::optional<CMTime>, double> cases[] = {
        {"five seconds of a hundred", CMTime{100, 1}, 0.55},
        {"five seconds of ten hours", CMTime{36'000, 1}, 0.5 + 5.0 / 36'000},
        {"no more than a tenth", CMTime{3, 1}, 0.6},
        {"unknown", std::nullopt, 0.55},
        {"nothing", CMTime::zero(), 0.55},
        {"indefinite", CMTime::indefinite(), 0.55},
    };
    for (auto& [name, duration, value] : cases) {
        Stage stage(true, duration);
        auto position = stage.harness.find(slider, "Playback Position");
        EXPECT_EQ(position.value(), elapsedTimeText(0.5, duration)) << name;
        EXPECT_TRUE(position.increment()) << name;
        EXPECT_NEAR(stage.value, value, 1e-12) << name;
        stage.value = 0.5;
        stage.harness.press(UIKeyCode::tab);
        stage.harness.press(UIKeyCode::right);
        EXPECT_NEAR(stage.value, value, 1e-12) << name;
        stage.harness.press(UIKeyCode::home);
        EXPECT_EQ(stage.value, 0) << name;
        EXPECT_TRUE(position.setValue(1)) << name;
        EXPECT_EQ(stage.value, 1) << name;
        EXPECT_TRUE(stage.isPlaying) << name << ": only a drag pauses";
    }
}

TEST(AudioSourceSlider, stands_a_value_that_is_none)
{
    for (double value : {notANumber, infinity, -infinity, -3.0, 7.0}) {
        Stage stage(false);
        stage.value = value;
        stage.harness.resize({340, 80});
        stage.harness.snapshot();
        stage.harness.press(UIKeyCode::tab);
        stage.harness.press(UIKeyCode::end);
        EXPECT_TRUE(stage.value == 1 || stage.value == value || std::isnan(value));
    }
}

} // namespace
} // namespace zelk
