// SPDX-License-Identifier: MIT
#include "kit/ui/LayoutStack.h"
#include "platform/swiftui/swiftui.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::DeclarativeHarness;
using zelk::LayoutStack;
using Stack = zelk::StackLayout;

// A button that counts its taps, in state of its own.
struct Counter {
    State<int> taps{0};
    auto dynamicProperties() { return std::tie(taps); }
    auto body() const
    {
        return Button{std::to_string(taps.get()), [taps = taps] { taps.set(*taps + 1); }};
    }
};

auto stack(Stack layout, std::optional<CGFloat> spacing)
{
    return LayoutStack{layout, spacing, [] { return Group{Counter{}, Text{"second, and wider"}}; }};
}

struct Described {
    Stack layout;
    std::optional<CGFloat> spacing{};
};

TEST(LayoutStack, keeps_its_contents_state_within_each_of_four_branches_and_no_longer)
{
    using enum HorizontalAlignment;
    auto column = Stack::vertical(), row = Stack::horizontal();
    const struct {
        const char* name;
        Described from, to;
        bool isKept;
    } cases[]{
        {"column, another alignment", {Stack::vertical(leading)}, {Stack::vertical(trailing)}, true},
        {"row, another alignment",
         {Stack::horizontal(VerticalAlignment::top)},
         {Stack::horizontal(VerticalAlignment::bottom)},
         true},
        {"column, another spacing", {column}, {column, 20}, true},
        {"column, none to a zero spacing", {column, 3}, {column, 0}, true},
        {"row, another spacing", {row, 4}, {row}, true},
        {"column, none to the centre", {column}, {Stack::vertical(center)}, false},
        {"row, none to the centre", {row}, {Stack::horizontal(VerticalAlignment::center)}, false},
        {"column, the centre to none", {Stack::vertical(center)}, {column}, false},
        {"column to row", {column}, {row}, false},
        {"row to column, both aligned",
         {Stack::horizontal(VerticalAlignment::top)},
         {Stack::vertical(leading)},
         false},
    };
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        DeclarativeHarness harness;
        auto controller = harness.show(stack(each.from.layout, each.from.spacing));
        harness.find(AccessibilityRole::button, "0").tap();
        harness.find(AccessibilityRole::button, "1").tap();
        controller->setRootView(stack(each.to.layout, each.to.spacing));
        harness.settle();
        EXPECT_EQ(harness.find(AccessibilityRole::button).label(), each.isKept ? "2" : "0");
    }
}

TEST(LayoutStack, stands_as_the_platforms_own_stack_does)
{
    auto places = [](auto root) {
        DeclarativeHarness harness;
        harness.show(std::move(root));
        return std::pair{harness.find(AccessibilityRole::button).frame(),
                         harness.find(AccessibilityRole::staticText, "second, and wider").frame()};
    };
    auto content = [] { return Group{Counter{}, Text{"second, and wider"}}; };
    using enum HorizontalAlignment;
    EXPECT_EQ(places(stack(Stack::vertical(), {})), places(VStack{content()}));
    EXPECT_EQ(places(stack(Stack::vertical(center), {})), places(VStack{content()}));
    EXPECT_EQ(places(stack(Stack::vertical(trailing), 30)),
              places(VStack{VStackOptions{trailing, 30}, content()}));
    EXPECT_EQ(places(stack(Stack::horizontal(), {})), places(HStack{content()}));
    EXPECT_EQ(places(stack(Stack::horizontal(VerticalAlignment::top), 0)),
              places(HStack{HStackOptions{VerticalAlignment::top, 0}, content()}));

    auto touching = places(stack(Stack::vertical(), 0));
    EXPECT_EQ(touching.first.maxY(), touching.second.minY());
    auto apart = places(stack(Stack::vertical(), {}));
    EXPECT_EQ(apart.second.minY() - apart.first.maxY(), 8);
}

} // namespace
