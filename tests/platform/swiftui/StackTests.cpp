// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/layoutProbes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;
using namespace probes;

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
constexpr auto notANumber = std::numeric_limits<CGFloat>::quiet_NaN();

struct Case {
    std::string_view name;
    AnyView view;
    std::string expected;
    CGSize window = {100, 50};
    bool isRightToLeft = false;
};

void check(const std::vector<Case>& cases)
{
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto traits = test.isRightToLeft ? rightToLeft() : UITraitCollection{};
        EXPECT_EQ(layoutOf(test.view, test.window, traits), test.expected);
    }
}

// Between the two lengths, taking as much of them as is offered.
auto between(std::string name, CGFloat minimum, CGFloat maximum)
{
    return Filler(std::move(name)) | flexibleFrame({.minWidth = minimum, .maxWidth = maximum});
}

TEST(Stack, shares_the_length_it_is_offered)
{
    auto a = Leaf("a"), b = Leaf("b");
    auto x = Filler("x"), y = Filler("y");
    check({
        {"fixed views stand in the middle, 8 points apart", AnyView{HStack{a, b}},
         "a 26 20 20 10, b 54 20 20 10"},
        {"a spacing of its own", AnyView{HStack{{.spacing = 0}, a, b}}, "a 30 20 20 10, b 50 20 20 10"},
        {"negative spacing overlaps", AnyView{HStack{{.spacing = -10}, a, b}},
         "a 35 20 20 10, b 45 20 20 10"},
        {"flexible views take what fixed ones leave", AnyView{HStack{{.spacing = 0}, x, a, y}},
         "x 0 0 40 50, a 40 20 20 10, y 60 0 40 50"},
        {"the least flexible choose first, whatever their order",
         AnyView{HStack{{.spacing = 0}, x, between("m", 0, 10)}}, "x 0 0 90 50, m 90 0 10 50"},
        {"a minimum is more than a share", AnyView{HStack{{.spacing = 0}, x, between("m", 70, 80)}},
         "x 0 0 30 50, m 30 0 70 50"},
        {"what is too long for the place reaches over both its ends",
         AnyView{HStack{{.spacing = 0}, Leaf("w", {90, 10}), Leaf("v", {30, 10})}},
         "w -10 20 90 10, v 80 20 30 10"},
        {"a column", AnyView{VStack{{.spacing = 0}, a, x}}, "a 40 0 20 10, x 0 10 100 40"},
        {"nothing at all", AnyView{HStack{}}, ""},
        {"a view that is nothing takes no spacing", AnyView{HStack{a, EmptyView{}, b}},
         "a 26 20 20 10, b 54 20 20 10"},
        {"a list stands in the row view by view", AnyView{HStack{{.spacing = 0}, Group{a, b}, x}},
         "a 0 20 20 10, b 20 20 20 10, x 40 0 60 50"},
        {"a modified list is one view, a column", AnyView{HStack{{.spacing = 0}, Group{a, b} | padding(1)}},
         "a 40 11 20 10, b 40 29 20 10"},
    });
}

TEST(Stack, gives_spacers_what_the_others_leave)
{
    auto a = Leaf("a"), b = Leaf("b");
    check({
        {"between", AnyView{HStack{{.spacing = 0}, a, Spacer{}, b}}, "a 0 20 20 10, b 80 20 20 10"},
        {"two of them share", AnyView{HStack{{.spacing = 0}, Spacer{}, a, Spacer{}}}, "a 40 20 20 10"},
        {"it is 8 points long at least",
         AnyView{HStack{{.spacing = 0}, Leaf("w", {60, 10}), Spacer{}, Leaf("v", {40, 10})}},
         "w -4 20 60 10, v 64 20 40 10"},
        {"or as long as it says",
         AnyView{HStack{{.spacing = 0}, Leaf("w", {60, 10}), Spacer{0}, Leaf("v", {40, 10})}},
         "w 0 20 60 10, v 60 20 40 10"},
        {"flexible views go before it", AnyView{HStack{{.spacing = 0}, Filler("x"), Spacer{}}},
         "x 0 0 92 50"},
        {"in a column it is high", AnyView{VStack{{.spacing = 0}, a, Spacer{}, b}},
         "a 40 0 20 10, b 40 40 20 10"},
        {"it takes no height of a row",
         AnyView{VStack{{.spacing = 0}, HStack{{.spacing = 0}, a, Spacer{}}, Filler("x")}},
         "a 0 0 20 10, x 0 10 100 40"},
        {"a length that is no number is none", AnyView{HStack{{.spacing = 0}, a, Spacer{notANumber}, b}},
         "a 0 20 20 10, b 80 20 20 10"},
    });
}

TEST(Stack, serves_higher_priorities_first)
{
    check({
        {"the lower one keeps its minimum",
         AnyView{HStack{{.spacing = 0}, between("m", 30, 100), Filler("x") | layoutPriority(1)}},
         "m 0 0 30 50, x 30 0 70 50"},
        {"a lower one is served last",
         AnyView{HStack{{.spacing = 0}, Filler("x") | layoutPriority(-1), between("m", 30, 60)}},
         "x 0 0 40 50, m 40 0 60 50"},
        {"one that is no number counts as none",
         AnyView{HStack{{.spacing = 0}, Filler("x") | layoutPriority(notANumber), Filler("y")}},
         "x 0 0 50 50, y 50 0 50 50"},
    });
}

TEST(Stack, aligns_its_views_across_and_mirrors_them)
{
    auto small = Leaf("s", {10, 10}), large = Leaf("l", {30, 30});
    using H = HorizontalAlignment;
    using V = VerticalAlignment;
    check({
        {"top", AnyView{HStack{{.alignment = V::top, .spacing = 0}, small, large}},
         "s 30 10 10 10, l 40 10 30 30"},
        {"bottom", AnyView{HStack{{.alignment = V::bottom, .spacing = 0}, small, large}},
         "s 30 30 10 10, l 40 10 30 30"},
        {"leading", AnyView{VStack{{.alignment = H::leading, .spacing = 0}, small, large}},
         "s 35 5 10 10, l 35 15 30 30"},
        {"trailing", AnyView{VStack{{.alignment = H::trailing, .spacing = 0}, small, large}},
         "s 55 5 10 10, l 35 15 30 30"},
        {"a row begins at the right",
         AnyView{HStack{{.spacing = 0}, small, large}},
         "s 60 20 10 10, l 30 10 30 30",
         {100, 50},
         true},
        {"leading is the right side",
         AnyView{VStack{{.alignment = H::leading, .spacing = 0}, small, large}},
         "s 55 5 10 10, l 35 15 30 30",
         {100, 50},
         true},
        {"padding changes sides",
         AnyView{Filler("x") | padding(EdgeInsets{1, 2, 3, 4})},
         "x 4 1 94 46",
         {100, 50},
         true},
    });
}

TEST(Stack, survives_lengths_that_are_no_lengths)
{
    auto a = Leaf("a"), b = Leaf("b");
    check({
        {"spacing that is no number", AnyView{HStack{{.spacing = notANumber}, a, b}},
         "a 30 20 20 10, b 50 20 20 10"},
        {"spacing without end", AnyView{HStack{{.spacing = infinity}, a, b}}, "a 30 20 20 10, b 50 20 20 10"},
        {"a view that is no number wide", AnyView{HStack{{.spacing = 0}, a, Leaf("n", {notANumber, -5}), b}},
         "a 30 20 20 10, n 50 25 0 0, b 50 20 20 10"},
        {"padding that is no number", AnyView{a | padding(notANumber)}, "a 40 20 20 10"},
        {"padding that is more than there is", AnyView{Filler("x") | padding(40)}, "x 40 25 20 0"},
        {"a window without size",
         AnyView{HStack{{.spacing = 0}, Filler("x"), a}},
         "x -10 0 0 0, a -10 -5 20 10",
         {0, 0}},
    });
    // A view that wants to be without end is placed somewhere, and the program goes on.
    auto wide = layoutOf(HStack{{.spacing = 0}, a, Leaf("w", {infinity, 10}), b}, {100, 50});
    EXPECT_EQ(wide.find("nan"), std::string::npos) << wide;
}

TEST(Stack, of_equal_options_is_not_laid_out_again)
{
    Shown harness(VStack{{.spacing = 4}, Leaf("a"), Leaf("b")});
    auto before = harness.controller->statistics();
    harness.update(VStack{{.spacing = 4}, Leaf("a"), Leaf("b")});
    EXPECT_EQ(harness.controller->statistics().measurements, before.measurements);
    EXPECT_EQ(harness.controller->statistics().placements, before.placements);
    harness.update(VStack{{.spacing = 5}, Leaf("a"), Leaf("b")});
    EXPECT_GT(harness.controller->statistics().placements, before.placements);
}

// A stack of stacks, to the depth given, in turn a row and a column of a flexible view and the rest.
template <int depth>
auto nested()
{
    if constexpr (depth == 0)
        return Filler("x");
    else if constexpr (depth % 2 == 0)
        return HStack{Filler("x"), nested<depth - 1>()};
    else
        return VStack{Filler("x"), nested<depth - 1>()};
}

TEST(Stack, within_stacks_measures_each_a_bounded_number_of_times)
{
    Shown harness({5000, 5000}, nested<14>());
    // 29 nodes; without what is remembered the innermost would be asked three times for each stack around it.
    EXPECT_LT(harness.controller->statistics().measurements, 29 * 12);
}

TEST(Stack, aligns_baselines_of_texts_of_different_sizes)
{
    auto row = [](VerticalAlignment alignment) {
        return HStack{{.alignment = alignment},
                      Text{"Large"} | font(Font::system(40)),
                      Text{"small\nof two lines"} | font(Font::system(12))};
    };
    for (auto alignment : {VerticalAlignment::firstTextBaseline, VerticalAlignment::lastTextBaseline}) {
        Shown harness(row(alignment));
        std::vector<CGFloat> baselines;
        for (auto& view : harness.controller->view()->subviews()) {
            auto isFirst = alignment == VerticalAlignment::firstTextBaseline;
            auto offset =
                isFirst ? view->firstBaselineOffset() : view->bounds().height() - view->lastBaselineOffset();
            baselines.push_back(view->frame().minY() + offset);
        }
        ASSERT_EQ(baselines.size(), 2u);
        EXPECT_NEAR(baselines[0], baselines[1], 1); // labels round their sizes up
    }
}

TEST(ZStack, is_as_large_as_the_largest_and_aligns_the_rest)
{
    auto small = Leaf("s", {10, 10}), large = Leaf("l", {30, 20});
    check({
        {"in the middle", AnyView{ZStack{large, small}}, "l 35 15 30 20, s 45 20 10 10"},
        {"at a corner", AnyView{ZStack{{Alignment::bottomTrailing()}, large, small}},
         "l 35 15 30 20, s 55 25 10 10"},
        {"mirrored",
         AnyView{ZStack{{Alignment::topLeading()}, large, small}},
         "l 35 15 30 20, s 55 15 10 10",
         {100, 50},
         true},
        {"nothing", AnyView{ZStack{}}, ""},
    });
}

TEST(Divider, is_a_hairline_across_its_stack)
{
    UITraitCollection sharp{.displayScale = 2};
    EXPECT_EQ(layoutOf(VStack{{.spacing = 0}, Leaf("a"), Divider{}}, {100, 50}, sharp),
              "a 40 19.75 20 10,  0 29.75 100 0.5");
    EXPECT_EQ(layoutOf(HStack{{.spacing = 0}, Leaf("a"), Divider{}}, {100, 50}, sharp),
              "a 39.75 20 20 10,  59.75 0 0.5 50");
}

} // namespace
