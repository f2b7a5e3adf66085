// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;

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
    Shown harness({100, 50}, stateful(handle, 0, [](int step) {
                      return HStack{{.spacing = 0},
                                    Filler("x") | layoutPriority(step),
                                    Filler("y") | padding(step) | offset({.x = step * 10.0})};
                  }));
    harness.set(handle, 1);
    auto& views = harness.controller->view()->subviews();
    EXPECT_EQ(views[0]->frame(), CGRect::make(0, 0, 98, 50));
    EXPECT_EQ(views[1]->frame(), CGRect::make(109, 1, 0, 48));
}

TEST(ZIndex, brings_views_to_the_front)
{
    auto handle = makeHandle<double>();
    Shown harness({100, 50}, stateful(handle, 0.0, [](double index) {
                      return ZStack{Filler("a") | zIndex(index), Filler("b")};
                  }));
    auto front = [&] { return harness.window().hitTest({50, 25})->accessibility().identifier; };
    EXPECT_EQ(front(), "b");
    harness.set(handle, 1);
    EXPECT_EQ(front(), "a");
    harness.set(handle, -1);
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
    Shown harness({100, 50}, HStack{{.spacing = 0}, Leaf("b"), reader(&count)});
    auto place = [&] { return harness.controller->view()->subviews().at(1)->frame(); };
    EXPECT_EQ(place(), CGRect::make(20, 0, 40, 10));
    EXPECT_EQ(count, 1);

    harness.window().setFrame(CGRect::make(0, 0, 200, 50));
    harness.settle();
    EXPECT_EQ(place(), CGRect::make(20, 0, 90, 10));
    EXPECT_EQ(count, 2);

    harness.update(HStack{{.spacing = 0}, Leaf("b"), reader(&count)});
    EXPECT_EQ(count, 3) << "a new description counts, the same place does not";
}

// The inner reader is described during a layout, before the group around it stands in the window.
TEST(GeometryReader, inside_of_a_group_that_another_describes_knows_its_place_in_the_window)
{
    auto frame = std::make_shared<CGRect>();
    auto inner = [frame](const GeometryProxy& proxy) {
        *frame = proxy.globalFrame;
        return Text{"Inside"};
    };
    auto outer = [inner](const GeometryProxy& proxy) {
        return GeometryReader{inner} | cornerRadius(8) | padding(20)
            | platform::frame({.width = proxy.size.width, .height = proxy.size.height});
    };
    Shown harness({320, 200}, GeometryReader{outer});
    EXPECT_EQ(*frame, CGRect::make(20, 20, 280, 160));
}

TEST(GeometryReader, with_a_text_inside_lays_out_what_changes_there)
{
    // The text becomes another one while the reader is laid out: it stands in its new size at once.
    Shown harness({100, 50}, GeometryReader{[](const GeometryProxy& proxy) {
                      return HStack{Text{proxy.size.width > 150 ? "a much longer text" : "short"}, Spacer{}};
                  }});
    auto& label = dynamic_cast<UILabel&>(harness.view());
    auto before = label.bounds().width();
    harness.window().setFrame(CGRect::make(0, 0, 300, 50));
    harness.settle();
    EXPECT_GT(label.bounds().width(), before);
    EXPECT_EQ(label.bounds().width(), label.sizeThatFits({unlimitedWidth, 0}).width);
}

} // namespace
