// SPDX-License-Identifier: MIT
#include "platform/swiftui/Button.h"

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/ForEach.h"
#include "platform/swiftui/ScrollView.h"
#include "platform/swiftui/environment.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/stacks.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <ranges>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

UIControl& controlIn(UIView& view)
{
    return dynamic_cast<UIControl&>(*view.subviews().at(0));
}

TEST(Button, acts_on_clicks_keys_and_assistive_technology)
{
    int count = 0;
    auto controller = host(Button{"Save", [&] { ++count; }});
    ViewHarness harness;
    harness.show(controller);
    harness.tap("Save");
    EXPECT_EQ(count, 1);
    auto& control = controlIn(*controller->view());
    ASSERT_TRUE(control.becomeFirstResponder());
    harness.press(UIKeyCode::space);
    EXPECT_EQ(count, 2);
    harness.press(UIKeyCode::returnKey);
    EXPECT_EQ(count, 3);
    EXPECT_TRUE(control.accessibilityActivate());
    EXPECT_EQ(count, 4);
    harness.drag(control.center(), {1, 1});
    EXPECT_EQ(count, 4) << "a press that leaves it does nothing";
}

TEST(Button, that_is_disabled_does_nothing_and_says_so)
{
    int count = 0;
    auto handle = makeHandle<bool>();
    auto controller = host(stateful(handle, false, [&count](bool isEnabled) {
        return Button{"Save", [&count] { ++count; }} | environment<IsEnabledKey>(isEnabled);
    }));
    ViewHarness harness;
    harness.show(controller);
    auto& control = controlIn(*controller->view());
    auto& label = dynamic_cast<UILabel&>(*control.subviews().at(0));
    harness.tap("Save");
    EXPECT_EQ(count, 0);
    EXPECT_FALSE(control.accessibilityNow().isEnabled);
    EXPECT_EQ(label.textColor(), UIColor::tertiaryLabel());
    (*handle)->set(true);
    harness.settle();
    harness.tap("Save");
    EXPECT_EQ(count, 1);
    EXPECT_EQ(label.textColor(), UIColor::systemBlue());
}

TEST(Button, speaks_all_that_its_label_says_and_takes_its_colour)
{
    auto controller = host(Button{[] { }, HStack{Text{"Save"}, Text{"all"}}} | tint(UIColor::red()));
    ViewHarness harness;
    harness.show(controller);
    auto& control = controlIn(*controller->view());
    EXPECT_EQ(control.accessibilityNow().label, "Save all");
    EXPECT_EQ(control.accessibilityNow().role, AccessibilityRole::button);
    EXPECT_EQ(dynamic_cast<UILabel&>(*control.subviews().at(1)).textColor(), UIColor::red());
}

TEST(Button, may_remove_itself)
{
    auto handle = makeHandle<bool>();
    auto controller = host(stateful(handle, true, [handle](bool isShown) {
        return when(isShown, [handle] { return Button{"Close", [handle] { (*handle)->set(false); }}; });
    }));
    ViewHarness harness;
    harness.show(controller);
    harness.tap("Close");
    EXPECT_TRUE(controller->view()->subviews().empty());
}

TEST(Button, runs_the_action_it_was_given_last)
{
    auto handle = makeHandle<int>();
    int seen = 0;
    auto controller = host(
        stateful(handle, 1, [&seen](int value) { return Button{"Show", [&seen, value] { seen = value; }}; }));
    ViewHarness harness;
    harness.show(controller);
    (*handle)->set(2);
    harness.settle();
    harness.tap("Show");
    EXPECT_EQ(seen, 2);
}

auto rows(int count, CGSize size = {50, 20})
{
    return VStack{{.spacing = 0}, ForEach{std::views::iota(0, count), std::identity{}, [size](int row) {
                                              return Leaf(std::to_string(row), size);
                                          }}};
}

UIScrollView& scrollViewIn(UIView& view)
{
    return dynamic_cast<UIScrollView&>(*view.subviews().at(0));
}

TEST(ScrollView, gives_its_content_all_the_length_it_wants)
{
    struct Case {
        std::string_view name;
        ScrollViewOptions options;
        CGSize row;
        CGSize content;
    };
    const Case cases[] = {
        {"downwards", {}, {50, 20}, {100, 200}},
        {"sideways", {.axes = AxisSet::horizontal}, {300, 20}, {300, 100}},
        {"both ways", {.axes = AxisSet::both}, {300, 20}, {300, 200}},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto controller = host(ScrollView{test.options, rows(10, test.row)});
        ViewHarness harness({100, 100});
        harness.show(controller);
        auto& scrollView = scrollViewIn(*controller->view());
        EXPECT_EQ(scrollView.frame(), CGRect::make(0, 0, 100, 100));
        EXPECT_EQ(scrollView.contentSize(), test.content);
    }
}

TEST(ScrollView, scrolls_and_keeps_its_place_when_the_content_changes)
{
    auto handle = makeHandle<int>();
    auto controller = host(stateful(handle, 10, [](int count) { return ScrollView{rows(count)}; }));
    ViewHarness harness({100, 100});
    harness.show(controller);
    auto& scrollView = scrollViewIn(*controller->view());
    EXPECT_TRUE(harness.scroll({50, 50}, {0, -60}));
    harness.advance(std::chrono::seconds(1));
    EXPECT_EQ(scrollView.contentOffset().y, 60);
    (*handle)->set(20);
    harness.settle();
    EXPECT_EQ(scrollView.contentSize().height, 400);
    EXPECT_EQ(scrollView.contentOffset().y, 60);
    (*handle)->set(6);
    harness.settle();
    EXPECT_EQ(scrollView.contentOffset().y, 20) << "it does not look past the end";
}

TEST(ScrollView, begins_where_reading_begins)
{
    auto controller = host(ScrollView{{.axes = AxisSet::horizontal}, rows(1, {300, 20})});
    ViewHarness harness({100, 100}, rightToLeft());
    harness.show(controller);
    EXPECT_EQ(scrollViewIn(*controller->view()).contentOffset().x, 200);
}

TEST(ScrollView, keeps_its_bars_when_its_content_comes_and_goes)
{
    auto handle = makeHandle<int>();
    auto controller = host(stateful(handle, 10, [](int count) { return ScrollView{rows(count)}; }));
    ViewHarness harness({100, 100});
    harness.show(controller);
    auto& scrollView = scrollViewIn(*controller->view());
    auto before = scrollView.subviews().size();
    (*handle)->set(11);
    harness.settle();
    (*handle)->set(0);
    harness.settle();
    EXPECT_EQ(scrollView.subviews().size(), before);
}

} // namespace
