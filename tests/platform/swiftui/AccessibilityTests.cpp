// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;

TEST(Accessibility, says_of_a_view_what_its_modifiers_say)
{
    Shown harness(Text("12") | accessibilityLabel("Volume") | accessibilityValue("12 percent")
                  | accessibilityHint("How loud it is") | accessibilityIdentifier("volume")
                  | accessibilityAddTraits(AccessibilityTraits::isHeader | AccessibilityTraits::isSelected));
    auto said = harness.find("volume").accessibilityNow();
    EXPECT_EQ(said.label, "Volume");
    EXPECT_EQ(said.value, "12 percent");
    EXPECT_EQ(said.hint, "How loud it is");
    EXPECT_EQ(said.role, AccessibilityRole::header);
    EXPECT_TRUE(said.isSelected);
}

TEST(Accessibility, speaks_of_the_element_through_groups_and_past_backgrounds)
{
    Shown harness(Text("text") | opacity(0.5) | background(Color{UIColor::black()}) | clipped()
                  | accessibilityLabel("said"));
    EXPECT_EQ(harness.find("said").accessibilityNow().role, AccessibilityRole::staticText);
}

TEST(Accessibility, makes_an_element_of_what_is_spoken_of)
{
    Shown harness(Color{UIColor::black()} | accessibilityLabel("Night"));
    EXPECT_EQ(harness.find("Night").accessibilityNow().role, AccessibilityRole::group);
}

TEST(Accessibility, follows_changes_of_what_is_said)
{
    auto selected = makeHandle<bool>();
    Shown harness(stateful(selected, true, [](bool isSelected) {
        return Text("row") | accessibilityIdentifier("row") | accessibilityValue(isSelected ? "on" : "off")
            | accessibilityAddTraits(isSelected
                                         ? AccessibilityTraits::isSelected | AccessibilityTraits::isButton
                                         : AccessibilityTraits{});
    }));
    auto& row = harness.find("row");
    EXPECT_EQ(row.accessibilityNow().role, AccessibilityRole::button);
    harness.set(selected, false);
    auto said = row.accessibilityNow();
    EXPECT_EQ(said.value, "off");
    EXPECT_FALSE(said.isSelected);
    EXPECT_EQ(said.role, AccessibilityRole::staticText);
}

TEST(Accessibility, speaks_of_views_that_come_later)
{
    auto loaded = makeHandle<bool>();
    auto inner = stateful(loaded, false, [](bool isLoaded) {
        return when(
            isLoaded, [] { return Text("picture") | overlay(Leaf("badge")); }, [] { return Text("wait"); });
    });
    Shown harness(inner | accessibilityLabel("Holiday"));
    EXPECT_EQ(harness.find("Holiday").accessibilityNow().label, "Holiday");
    harness.set(loaded, true);
    EXPECT_EQ(dynamic_cast<UILabel&>(harness.find("Holiday")).text(), "picture");
}

TEST(Accessibility, passes_over_what_is_hidden_with_all_it_holds)
{
    auto hidden = makeHandle<bool>();
    Shown harness(stateful(hidden, true, [](bool isHidden) {
        return (Text("a") | overlay(Text("b") | opacity(0.5)))
            | accessibilityHidden(isHidden ? AccessibilityHidden::yes : AccessibilityHidden::no);
    }));
    for (auto& view : harness.controller->view()->subviews())
        EXPECT_TRUE(view->accessibilityNow().isHidden);
    harness.set(hidden, false);
    for (auto& view : harness.controller->view()->subviews())
        EXPECT_FALSE(view->accessibilityNow().isHidden);
}

} // namespace
