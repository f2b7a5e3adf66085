// SPDX-License-Identifier: MIT
// Switches, segments, secret fields, and what turns while something is done.
#include "platform/dispatch/DisplayLink.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIPasteboard.h"
#include "platform/uikit/UIProgressView.h"
#include "platform/uikit/UISegmentedControl.h"
#include "platform/uikit/UISwitch.h"
#include "platform/uikit/UITextField.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;
using harness::ViewHarness;
using Act = std::function<void(ViewHarness&)>;

UITraitCollection traitsOf(bool isMirrored)
{
    return {.layoutDirection = isMirrored ? UIUserInterfaceLayoutDirection::rightToLeft
                                          : UIUserInterfaceLayoutDirection::leftToRight};
}

template <class V>
std::shared_ptr<V> put(ViewHarness& harness, std::shared_ptr<V> view,
                       CGRect frame = CGRect::make(60, 30, 200, 30))
{
    auto root = std::make_shared<UIView>();
    view->setFrame(frame);
    root->addSubview(view);
    harness.show(root);
    return view;
}

std::vector<CGRect> placesOfParts(const UIView& view)
{
    std::vector<CGRect> places;
    for (auto& part : view.subviews())
        places.push_back(part->frame());
    return places;
}

TEST(UISwitch, is_turned_by_clicks_keys_drags_and_assistive_technology)
{
    // Its capsule is 46 points wide, from 137 to 183.
    const std::tuple<std::string_view, Act, bool> cases[] = {
        {"a click", [](auto& h) { h.tap({160, 45}); }, true},
        {"twice", [](auto& h) { h.tap({160, 45}, {.tapCount = 2}); }, false},
        {"dragged over", [](auto& h) { h.drag({145, 45}, {180, 45}); }, true},
        {"dragged over and on", [](auto& h) { h.drag({145, 45}, {310, 45}); }, true},
        {"dragged over and back", [](auto& h) { h.pull({{145, 45}, {180, 45}, {145, 45}}).up(); }, false},
        {"let go beside", [](auto& h) { h.pull({{160, 45}, {160, 90}}).up(); }, false},
        {"taken away", [](auto& h) { h.pull({{145, 45}, {180, 45}}).cancel(); }, false},
        {"Space", [](auto& h) { h.press({UIKeyCode::tab, UIKeyCode::space}); }, true},
        {"a drag that ends outside, then Space",
         [](auto& h) { h.drag({145, 45}, {310, 45}), h.press({UIKeyCode::tab, UIKeyCode::space}); }, false},
        {"assistive technology", [](auto& h) { h.find(AccessibilityRole::toggle).activate(); }, true},
    };
    for (auto& [name, act, isOn] : cases) {
        ViewHarness harness({320, 100});
        auto view = put(harness, std::make_shared<UISwitch>());
        int told = 0;
        view->addAction([&](UIControl&) { ++told; }, {UIControlEvents::valueChanged});
        act(harness);
        EXPECT_EQ(view->isOn(), isOn) << name;
        EXPECT_EQ(told % 2 == 1, isOn) << name;
        EXPECT_EQ(harness.find(AccessibilityRole::toggle).isSelected(), isOn) << name;
        auto like = std::make_shared<UISwitch>();
        like->setFrame(view->frame());
        like->setOn(isOn);
        like->layoutIfNeeded();
        EXPECT_EQ(placesOfParts(*view), placesOfParts(*like)) << name << ": the knob is elsewhere";
    }
    ViewHarness mirrored({320, 100}, traitsOf(true));
    auto view = put(mirrored, std::make_shared<UISwitch>());
    mirrored.drag({175, 45}, {140, 45});
    EXPECT_TRUE(view->isOn());
}

TEST(UISegmentedControl, chooses_by_pointer_and_keys_and_passes_over_what_is_disabled)
{
    using enum UIKeyCode;
    struct Case {
        std::string_view name;
        bool isMirrored;
        Act act;
        int selected;
    };
    const Case cases[] = {
        {"a click", false, [](auto& h) { h.tap({135, 45}); }, 1},
        {"from the other side", true, [](auto& h) { h.tap({80, 45}); }, 3},
        {"dragged to the next", false, [](auto& h) { h.drag({80, 45}, {130, 45}); }, 1},
        {"one that is disabled", false, [](auto& h) { h.tap({185, 45}); }, 0},
        {"let go outside", false, [](auto& h) { h.pull({{135, 45}, {135, 95}}).up(); }, 0},
        {"on", false, [](auto& h) { h.press({tab, right}); }, 1},
        {"over the disabled one", false, [](auto& h) { h.press({tab, right, right}); }, 3},
        {"on is left from right to left", true, [](auto& h) { h.press({tab, left}); }, 1},
        {"no further than the first", false, [](auto& h) { h.press({tab, left}); }, 0},
        {"to the last", false, [](auto& h) { h.press({tab, end}); }, 3},
        {"by name", false, [](auto& h) { h.find(AccessibilityRole::radioButton, "d").activate(); }, 3},
        {"by the name of a disabled one", false,
         [](auto& h) { h.find(AccessibilityRole::radioButton, "c").activate(); }, 0},
    };
    for (auto& each : cases) {
        ViewHarness harness({320, 100}, traitsOf(each.isMirrored));
        auto control =
            put(harness, std::make_shared<UISegmentedControl>(std::vector<std::string>{"a", "b", "c", "d"}));
        control->setSelectedSegmentIndex(0);
        control->setEnabledForSegment(2, false);
        int told = 0;
        control->addAction([&](UIControl&) { ++told; }, {UIControlEvents::valueChanged});
        each.act(harness);
        EXPECT_EQ(control->selectedSegmentIndex(), each.selected) << each.name;
        EXPECT_EQ(told > 0, each.selected != 0) << each.name;
    }
}

TEST(UISegmentedControl, keeps_what_is_selected_while_segments_come_and_go)
{
    UISegmentedControl control({"a", "b", "c"});
    control.setSelectedSegmentIndex(1);
    control.insertSegment("new", 0);
    EXPECT_EQ(control.titleForSegment(static_cast<std::size_t>(control.selectedSegmentIndex())), "b");
    control.removeSegment(0);
    control.removeSegment(99);
    EXPECT_EQ(control.selectedSegmentIndex(), 1);
    control.removeSegment(1);
    EXPECT_EQ(control.selectedSegmentIndex(), UISegmentedControl::noSegment);
    control.setSelectedSegmentIndex(7);
    EXPECT_EQ(control.selectedSegmentIndex(), UISegmentedControl::noSegment);
    control.removeAllSegments();
    EXPECT_EQ(control.intrinsicContentSize().width, 0);
}

TEST(UIActivityIndicatorView, asks_for_frames_only_while_it_turns_and_is_seen)
{
    ViewHarness harness({320, 100});
    auto wheel = put(harness, std::make_shared<UIActivityIndicatorView>(), CGRect::make(10, 10, 20, 20));
    auto frames = [&] { return harness.playFrames(500ms).painted; };
    EXPECT_TRUE(wheel->isHidden()) << "it stands";
    frames();
    EXPECT_EQ(frames(), 0);
    wheel->startAnimating();
    EXPECT_GT(frames(), 25);
    EXPECT_TRUE(harness.find(AccessibilityRole::progress).properties().isBusy);

    const std::tuple<std::string_view, std::function<void()>, std::function<void()>> waysOut[] = {
        {"its superview is hidden", [&] { wheel->superview()->setHidden(true); },
         [&] { wheel->superview()->setHidden(false); }},
        {"it is clear", [&] { wheel->setAlpha(0); }, [&] { wheel->setAlpha(1); }},
        {"it is off the window", [&] { wheel->setCenter({900, 20}); }, [&] { wheel->setCenter({20, 20}); }},
        {"it is stopped", [&] { wheel->stopAnimating(); }, [&] { wheel->startAnimating(); }},
    };
    for (auto& [name, leave, comeBack] : waysOut) {
        leave();
        frames();
        EXPECT_EQ(frames(), 0) << name;
        EXPECT_FALSE(DisplayLink::shared().isRunning()) << name;
        comeBack();
        EXPECT_GT(frames(), 25) << name;
    }
    wheel->removeFromSuperview();
    EXPECT_FALSE(DisplayLink::shared().isRunning());
}

TEST(UIProgressView, moves_unless_less_motion_is_asked_for_and_takes_only_numbers)
{
    for (bool isReduced : {false, true}) {
        ViewHarness harness({320, 100}, {.prefersReducedMotion = isReduced});
        auto bar = put(harness, std::make_shared<UIProgressView>());
        bar->setProgress(1, Animated::yes);
        EXPECT_EQ(harness.playFrames(1s).painted > 5, !isReduced);
        bar->setProgress(std::nan(""));
        EXPECT_EQ(bar->progress(), 1);
        EXPECT_EQ(harness.find(AccessibilityRole::progress).range()->value, 1);
    }
}

TEST(UITextField, a_secret_is_edited_as_a_text_and_never_leaves_by_the_clipboard_or_the_bus)
{
    using enum UIKeyCode;
    constexpr auto control = UIKeyModifierFlags::control;
    const std::tuple<std::string_view, Act, std::string> cases[] = {
        {"typed", [](auto& h) { h.type("h\u00e9"); }, "secreth\u00e9"},
        {"typed in the middle", [](auto& h) { h.press({home, right}), h.type("\u00e9!"); }, "s\u00e9!ecret"},
        {"one deleted", [](auto& h) { h.press(deleteBackward); }, "secre"},
        {"one deleted after wide ones", [](auto& h) { h.type("\u20ac\u20ac"), h.press(deleteBackward); },
         "secret\u20ac"},
        {"replaced", [&](auto& h) { h.press("a", control), h.type("x"); }, "x"},
        {"pasted without line ends",
         [&](auto& h) { UIPasteboard::general().setString(String("a\nb")), h.press("v", control); },
         "secreta b"},
        {"undone: the dots alone would come back", [&](auto& h) { h.type("x"), h.press("z", control); },
         "secretx"},
    };
    for (auto& [name, act, expected] : cases) {
        ViewHarness harness({320, 100});
        auto field = put(harness, std::make_shared<UITextField>());
        field->setSecureTextEntry(true);
        field->setText("secret");
        field->becomeFirstResponder();
        act(harness);
        EXPECT_EQ(field->text(), expected) << name;
        EXPECT_EQ(harness.describe().find("secr"), std::string::npos) << name;
        harness.press("a", control);
        harness.press("c", control);
        auto copied = UIPasteboard::general().string();
        EXPECT_TRUE(!copied || copied->toStdString().find("secr") == std::string::npos) << name;
        field->setSecureTextEntry(false);
        EXPECT_EQ(field->text(), "") << "nobody reads it by asking";
    }
}

} // namespace
} // namespace platform
