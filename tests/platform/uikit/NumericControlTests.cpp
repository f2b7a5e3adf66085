// SPDX-License-Identifier: MIT
// Sliders, steppers and page controls: what they have in common, and what each does with a pointer.
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UIStepper.h"
#include "platform/uikit/ValueRange.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;
using harness::ViewHarness;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();

// A control in a window, which notes the values that it tells.
template <class Control>
struct Stage : ViewHarness {
    std::shared_ptr<Control> control = std::make_shared<Control>();
    std::vector<double> told;

    explicit Stage(const UITraitCollection& traits = {})
        : ViewHarness({320, 100}, traits)
    {
        auto root = std::make_shared<UIView>();
        control->setFrame(CGRect::make(60, 30, 200, 30));
        root->addSubview(control);
        control->addAction([this](UIControl&) { told.push_back(control->value()); },
                           {UIControlEvents::valueChanged});
        show(root);
    }
};

UITraitCollection rightToLeft()
{
    return {.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft};
}

TEST(ValueRange, is_proper_and_exact_at_its_ends_whatever_it_is_made_of)
{
    const std::tuple<std::string_view, ValueRange, ValueRange> propers[] = {
        {"as it is", {-2, 3}, {-2, 3}},
        {"inverted", {5, 2}, {5, 5}},
        {"infinite", {-infinity, 7}, {0, 7}},
        {"no numbers", {notANumber, notANumber}, {0, 1}},
        {"all there is", {-largest, largest}, {-largest, largest}},
    };
    for (auto& [name, given, proper] : propers) {
        auto range = given.proper();
        EXPECT_EQ(range, proper) << name;
        EXPECT_EQ(range.valueAt(0), range.lower) << name;
        EXPECT_EQ(range.valueAt(1), range.upper) << name;
        EXPECT_EQ(range.fractionOf(range.upper), range.isEmpty() ? 0 : 1) << name;
        EXPECT_EQ(range.clamped(notANumber), range.lower) << name;
    }
    const std::tuple<double, double, double> snapped[] = {{0.9, 0, 0.9}, {2.6, 1, 3},        {9.6, 4, 10},
                                                          {8.6, 4, 8},   {5, notANumber, 5}, {5, infinity, 5},
                                                          {-7, 3, 0}};
    for (auto [value, step, expected] : snapped)
        EXPECT_EQ((ValueRange{0, 10}.snapped(value, step)), expected) << value << " by " << step;
    EXPECT_EQ((ValueRange{-largest, largest}.fractionOf(0)), 0.5);
}

TEST(NumericControl, keeps_a_value_inside_of_a_proper_range)
{
    UISlider slider;
    slider.setValue(0.5);
    slider.setValue(notANumber);
    EXPECT_EQ(slider.value(), 0.5);
    slider.setMinimumValue(2);
    EXPECT_EQ(slider.range(), (ValueRange{2, 2})) << "the other end is taken along";
    EXPECT_EQ(slider.value(), 2);
    slider.setMaximumValue(infinity);
    slider.setMinimumValue(notANumber);
    EXPECT_EQ(slider.range(), (ValueRange{2, 2}));
    slider.setRange({0, 10});
    slider.setValue(infinity);
    EXPECT_EQ(slider.value(), 10);
}

TEST(NumericControl, keys_change_the_value_and_end_at_the_ends)
{
    using enum UIKeyCode;
    const std::tuple<std::string_view, UIKeyCode, double, double> cases[] = {
        {"right goes on", right, 55, 45}, {"left goes back", left, 45, 55}, {"up is more", up, 55, 55},
        {"down is less", down, 45, 45},   {"a page up", pageUp, 70, 70},    {"a page down", pageDown, 30, 30},
        {"the beginning", home, 0, 0},    {"the end", end, 100, 100},
    };
    for (bool isMirrored : {false, true}) {
        for (auto& [name, key, leftToRight, mirrored] : cases) {
            Stage<UISlider> stage(isMirrored ? rightToLeft() : UITraitCollection());
            stage.control->setRange({0, 100});
            stage.control->setValue(50);
            EXPECT_FALSE(stage.press(key)) << "it has no keyboard yet";
            stage.control->becomeFirstResponder();
            EXPECT_TRUE(stage.press(key)) << name;
            EXPECT_NEAR(stage.control->value(), isMirrored ? mirrored : leftToRight, 1e-9) << name;
            EXPECT_EQ(stage.told.size(), 1u) << name;
            EXPECT_FALSE(stage.press(key, UIKeyModifierFlags::control)) << name;
        }
    }
    Stage<UISlider> stage;
    stage.control->setValue(1);
    stage.control->becomeFirstResponder();
    EXPECT_TRUE(stage.press(right)) << "taken, or the focus would wander";
    EXPECT_TRUE(stage.told.empty());
    stage.control->setEnabled(false);
    EXPECT_FALSE(stage.press(left));
}

TEST(NumericControl, assistive_technology_sees_the_number_and_changes_it)
{
    Stage<UISlider> stage;
    stage.control->setRange({0, 10});
    stage.control->setStepValue(2);
    auto slider = stage.find(AccessibilityRole::slider);
    EXPECT_EQ(slider.range(), (AccessibilityRange{0, 10, 0, 2}));
    EXPECT_TRUE(slider.increment(2));
    EXPECT_TRUE(slider.decrement());
    EXPECT_TRUE(slider.setValue(6.9));
    EXPECT_EQ(stage.told, (std::vector<double>{4, 2, 6}));
    stage.control->setEnabled(false);
    EXPECT_FALSE(slider.increment());
    EXPECT_FALSE(slider.setValue(1));
    EXPECT_EQ(stage.control->value(), 6);
}

TEST(UISlider, follows_the_pointer_from_where_the_thumb_was_taken)
{
    using Act = std::function<void(Stage<UISlider>&)>;
    // The thumb's middle goes from 71 to 249.
    const std::tuple<std::string_view, Act, double> cases[] = {
        {"taken beside its middle it does not jump", [](auto& s) { s.drag({165, 45}, {165 + 44.5, 45}); },
         0.75},
        {"a press beside brings it there", [](auto& s) { s.tap({71 + 17.8, 45}); }, 0.1},
        {"past the end it stays at the end", [](auto& s) { s.drag({160, 45}, {900, 45}); }, 1},
        {"the way down does not count", [](auto& s) { s.drag({160, 45}, {71, 95}); }, 0},
    };
    for (bool isMirrored : {false, true}) {
        for (auto& [name, act, value] : cases) {
            Stage<UISlider> stage(isMirrored ? rightToLeft() : UITraitCollection());
            stage.control->setValue(0.5);
            act(stage);
            EXPECT_NEAR(stage.control->value(), isMirrored ? 1 - value : value, 1e-9) << name;
            EXPECT_NEAR(stage.control->thumbRect().midX() + 60, 71 + 178 * value, 1e-9) << name;
        }
    }
}

TEST(UISlider, tells_during_a_drag_or_only_at_its_end)
{
    for (bool isContinuous : {true, false}) {
        Stage<UISlider> stage;
        stage.control->setContinuous(isContinuous);
        stage.drag({71, 45}, {249, 45});
        EXPECT_EQ(stage.told.size(), isContinuous ? 10u : 1u);
        EXPECT_EQ(stage.told.back(), 1);
        stage.down({160, 45});
        stage.cancel();
        EXPECT_EQ(stage.control->value(), isContinuous ? 0.5 : 1) << "nobody heard of the other value";
    }
}

TEST(UISlider, may_be_switched_off_or_removed_by_its_own_action)
{
    Stage<UISlider> stage;
    auto slider = stage.control;
    slider->addAction([](UIControl& control) { control.setEnabled(false); }, {UIControlEvents::valueChanged});
    stage.drag({71, 45}, {249, 45});
    EXPECT_EQ(stage.told.size(), 1u);
    slider->setEnabled(true);
    slider->addAction([&](UIControl& control) { control.removeFromSuperview(); },
                      {UIControlEvents::valueChanged});
    stage.tap({200, 45});
    EXPECT_EQ(slider->superview(), nullptr);
}

TEST(UISlider, a_finger_on_it_does_not_scroll_what_is_around)
{
    ViewHarness harness({320, 200});
    auto scroll = std::make_shared<UIScrollView>();
    scroll->setContentSize({320, 900});
    auto slider = std::make_shared<UISlider>(CGRect::make(60, 30, 200, 30));
    scroll->addSubview(slider);
    harness.show(std::static_pointer_cast<UIView>(scroll));
    harness.drag({71, 45}, {249, 120}, 200ms, {.type = UITouchType::finger});
    EXPECT_EQ(slider->value(), 1);
    EXPECT_EQ(scroll->contentOffset().y, 0);
}

TEST(UIStepper, steps_by_halves_repeats_while_it_is_held_and_may_go_round)
{
    // It stands in the middle of its place: its halves are around 139 and 181.
    Stage<UIStepper> stage;
    stage.tap({181, 45});
    stage.tap({181, 45});
    stage.tap({139, 45});
    EXPECT_EQ(stage.told, (std::vector<double>{1, 2, 1}));
    stage.told.clear();
    stage.down({181, 45});
    stage.advance(950ms);
    EXPECT_EQ(stage.control->value(), 6) << "once, and after half a second each tenth";
    stage.moveTo({139, 45});
    stage.advance(1s);
    EXPECT_EQ(stage.control->value(), 6) << "not where the press began";
    stage.up();
    stage.advance(1s);
    EXPECT_EQ(stage.control->value(), 6);

    stage.control->setValue(100);
    stage.told.clear();
    stage.tap({181, 45});
    EXPECT_TRUE(stage.told.empty());
    stage.control->setWraps(true);
    stage.tap({181, 45});
    EXPECT_EQ(stage.control->value(), 0);
}

TEST(UIStepper, raises_at_the_end_of_reading)
{
    Stage<UIStepper> stage(rightToLeft());
    stage.tap({139, 45});
    EXPECT_EQ(stage.control->value(), 1);
}

TEST(UIPageControl, goes_to_the_dot_that_is_pressed_and_shows_those_around_the_present)
{
    Stage<UIPageControl> stage; // dots are 16 points apart, in the middle of 60 to 260
    stage.control->setNumberOfPages(5);
    stage.tap({160 + 16, 45});
    EXPECT_EQ(stage.control->currentPage(), 3);
    auto dots = stage.find(AccessibilityRole::spinButton);
    EXPECT_EQ(dots.range(), (AccessibilityRange{1, 5, 4, 1})) << "people count from one";
    EXPECT_TRUE(dots.setValue(2));
    EXPECT_EQ(stage.control->currentPage(), 1);

    stage.control->setNumberOfPages(1'000'000);
    stage.control->setCurrentPage(500'000);
    stage.tap({160 - 16, 45});
    EXPECT_NEAR(stage.control->currentPage(), 500'000, 2);
    stage.control->setNumberOfPages(-3);
    stage.tap({160, 45});
    EXPECT_EQ(stage.control->currentPage(), 0);
}

} // namespace
} // namespace platform
