// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/LayoutStack.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::LayoutStack;
using zelk::Spacing;
using zelk::StackLayout;

namespace {

// A tile that counts how often it was pressed: what is counted is its state.
struct Tile {
    std::string title;
    CGFloat side = GridSize::_500;
    State<int> count = 0;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        auto binding = count.binding();
        return Button{[binding] { binding.set(binding.get() + 1); },
                      Text{*count > 0 ? std::to_string(*count) : title}
                          | font(Font::headline()) | onTint()
                          | frame({.width = side, .height = side})
                          | background(RoundedRectangle{CornerRadius::_150})};
    }
    bool operator==(const Tile&) const = default;
};

// [Row or column]
struct Turning {
    State<bool> isRow = true;

    auto dynamicProperties() { return std::tie(isRow); }
    auto body() const
    {
        auto row = isRow.binding();
        auto turn = [row] { row.set(!row.get()); };
        return VStack{
            {.spacing = Spacing::_200},
            LayoutStack{*isRow ? StackLayout::horizontal() : StackLayout::vertical(),
                        Spacing::_150,
                        [] { return Group{Tile{"A"}, Tile{"B"}, Tile{"C"}}; }},
            Button{*isRow ? "As a column" : "As a row", turn}};
    }
    bool operator==(const Turning&) const = default;
};
// [/]

// [Alignment in place]
struct Aligning {
    State<VerticalAlignment> edge = VerticalAlignment::top;

    auto dynamicProperties() { return std::tie(edge); }
    auto body() const
    {
        auto chosen = edge.binding();
        auto other = *edge == VerticalAlignment::top ? VerticalAlignment::bottom
                                                     : VerticalAlignment::top;
        auto change = [chosen, other] {
            withAnimation(Animation::spring(), [&] { chosen.set(other); });
        };
        return VStack{{.spacing = Spacing::_200},
                      LayoutStack{StackLayout::horizontal(*edge), Spacing::_150,
                                  [] {
                                      return Group{Tile{"A"}, Tile{"B", GridSize::_300},
                                                   Tile{"C", GridSize::_400}};
                                  }},
                      Button{"The other edge", change}};
    }
    bool operator==(const Aligning&) const = default;
};
// [/]

} // namespace

Page layoutStackPage()
{
    return {.name = "layout-stack",
            .title = "Layout stack",
            .group = "Containers",
            .symbol = "squareshape.split.2x2",
            .summary = "The same content as a row or as a column, as a value says.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"Row or column",
                     "Press a tile, then turn: each direction is a place of its own, so "
                     "counting begins anew.",
                     AnyView(Turning{})},
                    {"Alignment in place",
                     "Another edge is the same place: what was counted stays.",
                     AnyView(Aligning{})}};
            }};
}

} // namespace gallery
