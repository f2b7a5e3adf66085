// SPDX-License-Identifier: MIT
#include "platform/swiftui/placement.h"

#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/Spacer.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/ZStack.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/padding.h"
#include "platform/swiftui/stacks.h"
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

constexpr auto notANumber = std::numeric_limits<CGFloat>::quiet_NaN();

TEST(Placement, follows_each_modifier)
{
    auto leaf = Leaf("a");
    struct Case {
        std::string_view name;
        std::string actual, expected;
    };
    const Case cases[] = {
        {"padding on all sides", layoutOf(Filler("x") | padding(), {100, 50}), "x 16 16 68 18"},
        {"padding on some", layoutOf(Filler("x") | padding(EdgeSet::leading | EdgeSet::top, 5), {100, 50}),
         "x 5 5 95 45"},
        {"negative padding", layoutOf(Filler("x") | padding(-10), {100, 50}), "x -10 -10 120 70"},
        {"an offset leaves the neighbours where they are",
         layoutOf(HStack{{.spacing = 0}, leaf | offset({.x = 5, .y = -2}), Leaf("b")}, {100, 50}),
         "a 35 18 20 10, b 50 20 20 10"},
        {"an offset that is no number", layoutOf(leaf | offset({.x = notANumber}), {100, 50}),
         "a 40 20 20 10"},
        {"a position", layoutOf(leaf | position({10, 5}), {100, 50}), "a 0 0 20 10"},
        {"a position from the right", layoutOf(leaf | position({10, 5}), {100, 50}, rightToLeft()),
         "a 80 0 20 10"},
        {"ideal lengths", layoutOf(Filler("x") | fixedSize(), {100, 50}), "x 45 20 10 10"},
        {"an ideal length",
         layoutOf(Filler("x") | fixedSize({.horizontal = true, .vertical = false}), {100, 50}),
         "x 45 0 10 50"},
        {"proportions that fit", layoutOf(Filler("x") | aspectRatio(1), {100, 50}), "x 25 0 50 50"},
        {"proportions that fill", layoutOf(Filler("x") | aspectRatio(1, ContentMode::fill), {100, 50}),
         "x 0 -25 100 100"},
        {"proportions of one length",
         layoutOf(Filler("x") | aspectRatio(2) | fixedSize({.horizontal = false, .vertical = true}),
                  {100, 80}),
         "x 0 15 100 50"},
    };
    for (auto& test : cases)
        EXPECT_EQ(test.actual, test.expected) << test.name;
}

TEST(Placement, changes_with_the_modifier)
{
    auto handle = makeHandle<int>();
    auto controller = host(stateful(handle, 0, [](int step) {
        return HStack{{.spacing = 0},
                      Filler("x") | layoutPriority(step),
                      Filler("y") | padding(step) | offset({.x = step * 10.0})};
    }));
    ViewHarness harness({100, 50});
    harness.show(controller);
    (*handle)->set(1);
    harness.settle();
    auto& views = controller->view()->subviews();
    EXPECT_EQ(views[0]->frame(), CGRect::make(0, 0, 98, 50));
    EXPECT_EQ(views[1]->frame(), CGRect::make(109, 1, 0, 48));
}

TEST(ZIndex, brings_views_to_the_front)
{
    auto handle = makeHandle<double>();
    auto controller = host(
        stateful(handle, 0.0, [](double index) { return ZStack{Filler("a") | zIndex(index), Filler("b")}; }));
    ViewHarness harness({100, 50});
    harness.show(controller);
    auto front = [&] { return harness.window().hitTest({50, 25})->accessibility().identifier; };
    EXPECT_EQ(front(), "b");
    (*handle)->set(1);
    harness.settle();
    EXPECT_EQ(front(), "a");
    (*handle)->set(-1);
    harness.settle();
    EXPECT_EQ(front(), "b");
}

TEST(GeometryReader, describes_its_content_by_its_size)
{
    auto reader = [](int* count) {
        return GeometryReader{[count](const GeometryProxy& proxy) {
            ++*count;
            return Leaf("a", {proxy.size.width / 2, proxy.size.height / 5});
        }};
    };
    int count = 0;
    auto controller = host(HStack{{.spacing = 0}, Leaf("b"), reader(&count)});
    ViewHarness harness({100, 50});
    harness.show(controller);
    auto place = [&] { return controller->view()->subviews().at(1)->frame(); };
    EXPECT_EQ(place(), CGRect::make(20, 0, 40, 10));
    EXPECT_EQ(count, 1);

    harness.window().setFrame(CGRect::make(0, 0, 200, 50));
    harness.settle();
    EXPECT_EQ(place(), CGRect::make(20, 0, 90, 10));
    EXPECT_EQ(count, 2);

    controller->setRootView(HStack{{.spacing = 0}, Leaf("b"), reader(&count)});
    harness.settle();
    EXPECT_EQ(count, 3) << "a new description counts, the same place does not";
}

TEST(GeometryReader, knows_its_place_in_the_window)
{
    auto seen = std::make_shared<CGRect>();
    auto controller = host(GeometryReader{[seen](const GeometryProxy& proxy) {
                               *seen = proxy.globalFrame;
                               return Leaf("a");
                           }}
                           | padding(10));
    ViewHarness harness({100, 50});
    harness.show(controller);
    EXPECT_EQ(*seen, CGRect::make(10, 10, 80, 30));
}

TEST(GeometryReader, with_a_text_inside_lays_out_what_changes_there)
{
    // The text becomes another one while the reader is laid out: it stands in its new size at once.
    auto controller = host(GeometryReader{[](const GeometryProxy& proxy) {
        return HStack{Text{proxy.size.width > 150 ? "a much longer text" : "short"}, Spacer{}};
    }});
    ViewHarness harness({100, 50});
    harness.show(controller);
    auto& label = dynamic_cast<UILabel&>(*controller->view()->subviews().at(0));
    auto before = label.bounds().width();
    harness.window().setFrame(CGRect::make(0, 0, 300, 50));
    harness.settle();
    EXPECT_GT(label.bounds().width(), before);
    EXPECT_EQ(label.bounds().width(), label.sizeThatFits({unlimitedWidth, 0}).width);
}

} // namespace
