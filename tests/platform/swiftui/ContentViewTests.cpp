// SPDX-License-Identifier: MIT
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <ranges>

namespace {

using namespace platform;
using namespace probes;

UIControl& controlIn(UIView& view)
{
    return dynamic_cast<UIControl&>(*view.subviews().at(0));
}

TEST(Button, acts_on_clicks_keys_and_assistive_technology)
{
    int count = 0;
    Shown harness(Button{"Save", [&] { ++count; }});
    harness.tap("Save");
    EXPECT_EQ(count, 1);
    auto& control = controlIn(*harness.controller->view());
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
    Shown harness(stateful(handle, false, [&count](bool isEnabled) {
        return Button{"Save", [&count] { ++count; }} | environment<IsEnabledKey>(isEnabled);
    }));
    auto& control = controlIn(*harness.controller->view());
    auto& label = dynamic_cast<UILabel&>(*control.subviews().at(0));
    harness.tap("Save");
    EXPECT_EQ(count, 0);
    EXPECT_FALSE(control.accessibilityNow().isEnabled);
    EXPECT_EQ(label.textColor(), UIColor::tertiaryLabel());
    harness.set(handle, true);
    harness.tap("Save");
    EXPECT_EQ(count, 1);
    EXPECT_EQ(label.textColor(), UIColor::systemBlue());
}

TEST(Button, speaks_all_that_its_label_says_and_takes_its_colour)
{
    Shown harness(Button{[] { }, HStack{Text{"Save"}, Text{"all"}}} | tint(UIColor::red()));
    auto& control = controlIn(*harness.controller->view());
    EXPECT_EQ(control.accessibilityNow().label, "Save all");
    EXPECT_EQ(control.accessibilityNow().role, AccessibilityRole::button);
    EXPECT_EQ(dynamic_cast<UILabel&>(*control.subviews().at(1)).textColor(), UIColor::red());
}

TEST(Button, runs_the_action_it_was_given_last)
{
    auto handle = makeHandle<int>();
    int seen = 0;
    Shown harness(
        stateful(handle, 1, [&seen](int value) { return Button{"Show", [&seen, value] { seen = value; }}; }));
    harness.set(handle, 2);
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
        Shown harness({100, 100}, ScrollView{test.options, rows(10, test.row)});
        auto& scrollView = scrollViewIn(*harness.controller->view());
        EXPECT_EQ(scrollView.frame(), CGRect::make(0, 0, 100, 100));
        EXPECT_EQ(scrollView.contentSize(), test.content);
    }
}

TEST(ScrollView, scrolls_and_keeps_its_place_when_the_content_changes)
{
    auto handle = makeHandle<int>();
    Shown harness({100, 100}, stateful(handle, 10, [](int count) { return ScrollView{rows(count)}; }));
    auto& scrollView = scrollViewIn(*harness.controller->view());
    EXPECT_TRUE(harness.scroll({50, 50}, {0, -60}));
    harness.advance(std::chrono::seconds(1));
    EXPECT_EQ(scrollView.contentOffset().y, 60);
    harness.set(handle, 20);
    EXPECT_EQ(scrollView.contentSize().height, 400);
    EXPECT_EQ(scrollView.contentOffset().y, 60);
    harness.set(handle, 6);
    EXPECT_EQ(scrollView.contentOffset().y, 20) << "it does not look past the end";
}

TEST(ScrollView, keeps_its_bars_when_its_content_comes_and_goes)
{
    auto handle = makeHandle<int>();
    Shown harness({100, 100}, stateful(handle, 10, [](int count) { return ScrollView{rows(count)}; }));
    auto& scrollView = scrollViewIn(*harness.controller->view());
    auto before = scrollView.subviews().size();
    harness.set(handle, 11);
    harness.set(handle, 0);
    EXPECT_EQ(scrollView.subviews().size(), before);
}

TEST(ScrollView, keeps_its_distance_from_where_reading_begins)
{
    for (auto direction :
         {UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft}) {
        auto isMirrored = direction == UIUserInterfaceLayoutDirection::rightToLeft;
        SCOPED_TRACE(isMirrored);
        harness::ViewHarness harness({100, 50}, {.layoutDirection = direction});
        auto width = makeHandle<CGFloat>();
        harness.show(host(stateful(width, 400.0, [](CGFloat wide) {
            return ScrollView{{.axes = AxisSet::horizontal}, Color{} | frame({.width = wide, .height = 20})};
        })));
        harness.settle();
        auto& view = static_cast<UIScrollView&>(harness.find(AccessibilityRole::scrollArea).view());
        auto fromStart = [&] {
            auto x = view.contentOffset().x;
            return isMirrored ? view.contentSize().width - x - 100 : x;
        };
        EXPECT_EQ(fromStart(), 0);
        view.setContentOffset({isMirrored ? 250.0 : 50.0, 0});
        for (CGFloat wide : {700.0, 300.0}) {
            (*width)->set(wide);
            harness.settle();
            EXPECT_EQ(fromStart(), 50);
        }
        (*width)->set(80);
        harness.settle();
        EXPECT_EQ(view.contentOffset().x, 0);
    }
}

TEST(ScrollView, stands_content_without_end)
{
    constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
    for (auto axes : {AxisSet::vertical, AxisSet::horizontal, AxisSet::both}) {
        Shown harness({100, 50}, ScrollView{{.axes = axes}, Leaf("endless", {infinity, infinity})});
        harness.settle();
        auto& view = static_cast<UIScrollView&>(harness.find(AccessibilityRole::scrollArea).view());
        EXPECT_EQ(view.contentSize(), (CGSize{100, 50}));
    }
}

} // namespace
