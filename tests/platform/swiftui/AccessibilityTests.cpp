// SPDX-License-Identifier: MIT
#include "platform/swiftui/accessibility.h"

#include "platform/swiftui/Color.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/effects.h"
#include "platform/swiftui/layered.h"
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/probes.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

TEST(Accessibility, says_of_a_view_what_its_modifiers_say)
{
    ViewHarness harness;
    harness.show(
        host(Text("12") | accessibilityLabel("Volume") | accessibilityValue("12 percent")
             | accessibilityHint("How loud it is") | accessibilityIdentifier("volume")
             | accessibilityAddTraits(AccessibilityTraits::isHeader | AccessibilityTraits::isSelected)));
    auto said = harness.find("volume").accessibilityNow();
    EXPECT_EQ(said.label, "Volume");
    EXPECT_EQ(said.value, "12 percent");
    EXPECT_EQ(said.hint, "How loud it is");
    EXPECT_EQ(said.role, AccessibilityRole::header);
    EXPECT_TRUE(said.isSelected);
}

TEST(Accessibility, speaks_of_the_element_through_groups_and_past_backgrounds)
{
    ViewHarness harness;
    harness.show(host(Text("text") | opacity(0.5) | background(Color{UIColor::black()}) | clipped()
                      | accessibilityLabel("said")));
    EXPECT_EQ(harness.find("said").accessibilityNow().role, AccessibilityRole::staticText);
}

TEST(Accessibility, makes_an_element_of_what_is_spoken_of)
{
    ViewHarness harness;
    harness.show(host(Color{UIColor::black()} | accessibilityLabel("Night")));
    EXPECT_EQ(harness.find("Night").accessibilityNow().role, AccessibilityRole::group);
}

TEST(Accessibility, follows_changes_of_what_is_said)
{
    auto selected = makeHandle<bool>();
    ViewHarness harness;
    harness.show(host(stateful(selected, true, [](bool isSelected) {
        return Text("row") | accessibilityIdentifier("row") | accessibilityValue(isSelected ? "on" : "off")
            | accessibilityAddTraits(isSelected
                                         ? AccessibilityTraits::isSelected | AccessibilityTraits::isButton
                                         : AccessibilityTraits{});
    })));
    auto& row = harness.find("row");
    EXPECT_EQ(row.accessibilityNow().role, AccessibilityRole::button);
    (*selected)->set(false);
    harness.settle();
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
    ViewHarness harness;
    harness.show(host(inner | accessibilityLabel("Holiday")));
    EXPECT_EQ(harness.find("Holiday").accessibilityNow().label, "Holiday");
    (*loaded)->set(true);
    harness.settle();
    EXPECT_EQ(dynamic_cast<UILabel&>(harness.find("Holiday")).text(), "picture");
}

TEST(Accessibility, passes_over_what_is_hidden_with_all_it_holds)
{
    auto hidden = makeHandle<bool>();
    auto controller = host(stateful(hidden, true, [](bool isHidden) {
        return (Text("a") | overlay(Text("b") | opacity(0.5)))
            | accessibilityHidden(isHidden ? AccessibilityHidden::yes : AccessibilityHidden::no);
    }));
    ViewHarness harness;
    harness.show(controller);
    for (auto& view : controller->view()->subviews())
        EXPECT_TRUE(view->accessibilityNow().isHidden);
    (*hidden)->set(false);
    harness.settle();
    for (auto& view : controller->view()->subviews())
        EXPECT_FALSE(view->accessibilityNow().isHidden);
}

} // namespace
