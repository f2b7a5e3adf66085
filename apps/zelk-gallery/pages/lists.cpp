// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/ZelkNavigationView.h"
#include "platform/swiftui/Form.h"
#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/List.h"
#include "platform/swiftui/NavigationLink.h"
#include "platform/swiftui/NavigationView.h"
#include "platform/swiftui/Section.h"
#include "platform/swiftui/Slider.h"
#include "platform/swiftui/Toggle.h"
#include "platform/swiftui/swiftui.h"

#include <algorithm>
#include <ranges>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::Spacing;
using zelk::ZelkNavigationView;

namespace {

// [Ten thousand rows]
struct Tracks {
    State<std::optional<int>> chosen = std::optional(2);

    auto dynamicProperties() { return std::tie(chosen); }
    auto body() const
    {
        return List{chosen.binding(), std::views::iota(1, 10'001), std::identity{},
                    [](int number) {
                        return HStack{Image{.systemName = "music.note"} | tinted(),
                                      Text{"Track " + std::to_string(number)}, Spacer{},
                                      Text{"3:20"}
                                          | foregroundColor(UIColor::secondaryLabel())};
                    }}
        | frame({.height = 260}) | cornerRadius(CornerRadius::_150);
    }
};
// [/]

// [Groups]
struct Settings {
    State<bool> isLoud = true;
    State<double> volume = 0.6;

    auto dynamicProperties() { return std::tie(isLoud, volume); }
    auto body() const
    {
        return Form{Section{"Sound", Toggle{"Speak", isLoud.binding()},
                            Slider{volume.binding(), {.label = "Volume"}}},
                    Section{SectionTitles{"About", "Made for the desktop."},
                            Text{"Version 0.1"}, Text{"Licence"}}}
        | frame({.height = 360}) | cornerRadius(CornerRadius::_150);
    }
};
// [/]

// [One step deeper]
auto planets()
{
    auto destination = [](const std::string& name) {
        return VStack{Image{.systemName = "globe"} | font(Font::system(64)) | tinted(),
                      Text{"This is " + name}}
        | navigationTitle(name);
    };
    std::vector<std::string> names{"Mercury", "Venus", "Earth", "Mars"};
    return List{names, std::identity{},
                [destination](const std::string& name) {
                    return NavigationLink{name, destination(name)};
                }}
    | navigationTitle("Planets");
}

auto navigation()
{
    return ZelkNavigationView{[] { return planets(); }} | frame({.height = 320})
        | cornerRadius(CornerRadius::_150);
}
// [/]

// [Side by side]
auto columns()
{
    auto window = [](const GeometryProxy& place) {
        // As a window of that width shows it, made smaller where there is less room.
        constexpr CGFloat width = 720;
        auto scale = std::min(place.size.width / width, 1.0);
        auto hint = Text{"Choose a planet"} | foregroundColor(UIColor::secondaryLabel());
        return NavigationView{planets(), hint}
        | navigationViewStyle(NavigationViewStyle::columns)
            | frame({.width = place.size.width / scale,
                     .height = place.size.height / scale})
            | scaleEffect(scale)
            | frame({.width = place.size.width, .height = place.size.height});
    };
    return GeometryReader{window} | frame({.height = 280})
        | cornerRadius(CornerRadius::_150);
}
// [/]

} // namespace

Page listsPage()
{
    return {.name = "lists",
            .title = "Lists and navigation",
            .group = "Containers",
            .symbol = "list.bullet",
            .summary = "Only the rows in sight exist. A page deeper brings its way back.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"Ten thousand rows",
                     "Press a row, or go from one to the next by keys.",
                     AnyView(Tracks{})},
                    {"Groups", "", AnyView(Settings{})},
                    {"One step deeper", "Press a row; Escape or the arrow leads back.",
                     AnyView(navigation())},
                    {"Side by side",
                     "In a wide window what is chosen stands beside the list.",
                     AnyView(columns())}};
            }};
}

} // namespace gallery
