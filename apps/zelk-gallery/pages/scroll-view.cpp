// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/ZelkScrollView.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/ControlLook.h"

#include <ranges>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::ScrollViewIndicators;
using zelk::Spacing;
using zelk::ZelkScrollView;

namespace {

auto tile(int index)
{
    auto hue = index % 6;
    static const std::vector<UIColor> colors{
        UIColor::systemRed(),   UIColor::systemOrange(), UIColor::systemYellow(),
        UIColor::systemGreen(), UIColor::systemTeal(),   UIColor::systemIndigo()};
    const auto& color = colors[static_cast<std::size_t>(hue)];
    return Text{std::to_string(index)} | font(Font::title2().bold())
        | foregroundColor(legibleColor(color))
        | frame({.width = GridSize::_600, .height = GridSize::_600})
        | background(RoundedRectangle{CornerRadius::_200} | fill(color));
}

auto tiles()
{
    return HStack{{.spacing = Spacing::_150},
                  ForEach{std::views::iota(1, 16), std::identity{},
                          [](int index) { return tile(index); }}}
    | padding(EdgeSet::vertical, Spacing::_150);
}

// [With indicators]
auto withIndicators()
{
    return ZelkScrollView{
               {.axes = AxisSet::horizontal, .indicators = ScrollViewIndicators::all},
               [] { return tiles(); }}
    | frame({.height = GridSize::_1000});
}
// [/]

// [Unclipped, without indicators]
auto unclipped()
{
    return ZelkScrollView{{.axes = AxisSet::horizontal,
                           .indicators = ScrollViewIndicators::macCatalyst,
                           .clipsToBounds = false},
                          [] { return tiles(); }}
    | frame({.width = 300, .height = GridSize::_1000});
}
// [/]

// [Both ways]
auto bothWays()
{
    auto row = [](int line) {
        return HStack{{.spacing = Spacing::_150},
                      ForEach{std::views::iota(line * 10, line * 10 + 10),
                              std::identity{}, [](int index) { return tile(index); }}};
    };
    return ZelkScrollView{{.axes = AxisSet::both},
                          [row] {
                              return VStack{
                                  {.spacing = Spacing::_150},
                                  ForEach{std::views::iota(0, 8), std::identity{}, row}};
                          }}
    | frame({.height = 260}) | cornerRadius(CornerRadius::_150);
}
// [/]

} // namespace

Page scrollViewPage()
{
    return {.name = "scroll-view",
            .title = "Scroll view",
            .group = "Containers",
            .symbol = "chevron.up.chevron.down",
            .summary = "With the wheel, two fingers, a touch, the keyboard or its bar; "
                       "what is thrown runs on.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"With indicators", "", AnyView(withIndicators())},
                    {"Unclipped, without indicators",
                     "What lies outside of its bounds stays in sight.",
                     AnyView(unclipped())},
                    {"Both ways", "", AnyView(bothWays())}};
            }};
}

} // namespace gallery
