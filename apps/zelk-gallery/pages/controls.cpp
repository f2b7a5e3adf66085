// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/Spacing.h"
#include "platform/swiftui/Picker.h"
#include "platform/swiftui/ProgressView.h"
#include "platform/swiftui/Slider.h"
#include "platform/swiftui/Stepper.h"
#include "platform/swiftui/TabView.h"
#include "platform/swiftui/TextField.h"
#include "platform/swiftui/Toggle.h"
#include "platform/swiftui/controlStyles.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::Spacing;

namespace {

// [Buttons]
auto buttons()
{
    return HStack{{.spacing = Spacing::_200},
                  Button{"Plain", [] { }} | buttonStyle(ButtonStyle::plain),
                  Button{"Bordered", [] { }} | buttonStyle(ButtonStyle::bordered),
                  Button{"Prominent", [] { }}
                      | buttonStyle(ButtonStyle::borderedProminent),
                  Button{"Disabled", [] { }} | buttonStyle(ButtonStyle::bordered)
                      | disabled()}
    | lineLimit(1);
}
// [/]

// [Slider and progress]
struct Sliding {
    State<double> value = 0.4;

    auto dynamicProperties() { return std::tie(value); }
    auto body() const
    {
        return VStack{
            {.spacing = Spacing::_200},
            Slider{value.binding(), {.label = "Part"}},
            ProgressView{*value},
            Slider{value.binding(), {.step = 0.25, .label = "Quarters"}} | disabled(),
            HStack{{.spacing = Spacing::_300}, ProgressView{}, ProgressView{"Loading"}}};
    }
};
// [/]

// [Switch and stepper]
struct Switching {
    State<bool> isOn = true;
    State<bool> isBold = false;
    State<double> copies = 3.0;

    auto dynamicProperties() { return std::tie(isOn, isBold, copies); }
    auto body() const
    {
        auto count = std::to_string(static_cast<int>(*copies));
        return VStack{{.spacing = Spacing::_200},
                      Toggle{"Wi-Fi", isOn.binding()},
                      Toggle{"Not now", Binding<bool>::constant(false)} | disabled(),
                      Stepper{"Copies: " + count, copies.binding(), {.in = {1, 9}}},
                      Toggle{"Bold", isBold.binding()}
                          | toggleStyle(ToggleStyle::button_)};
    }
};
// [/]

// [One of a few]
struct Choosing {
    State<int> flavour = 1;

    auto dynamicProperties() { return std::tie(flavour); }
    auto body() const
    {
        return Picker<int>{"Flavour",
                           flavour.binding(),
                           {{0, "Lemon"}, {1, "Mint"}, {2, "Vanilla"}, {3, "Chocolate"}}};
    }
};
// [/]

// [Text fields]
struct Typing {
    State<std::string> name = std::string("Ada");
    State<std::string> secret = std::string("analytical");
    State<std::string> empty = std::string();

    auto dynamicProperties() { return std::tie(name, secret, empty); }
    auto body() const
    {
        return VStack{{.spacing = Spacing::_150},
                      TextField{"Name", name.binding()},
                      TextField{"Nothing yet", empty.binding()},
                      SecureField{"Secret", secret.binding()}}
        | textFieldStyle(TextFieldStyle::roundedBorder);
    }
};
// [/]

// [Long, empty and out of range]
struct Hostile {
    State<bool> isOn = true;
    State<std::string> text =
        std::string("a text that is longer than there is room for ").append(60, '-');

    auto dynamicProperties() { return std::tie(isOn, text); }
    auto body() const
    {
        std::string title =
            "A title that somebody wrote who was paid by the word and did not "
            "expect that anybody would ever have to show it";
        return VStack{{.spacing = Spacing::_200},
                      Toggle{title, isOn.binding()},
                      Button{title, [] { }} | buttonStyle(ButtonStyle::bordered),
                      Button{"", [] { }} | buttonStyle(ButtonStyle::borderedProminent),
                      TextField{"", text.binding()}
                          | textFieldStyle(TextFieldStyle::roundedBorder),
                      Slider{Binding<double>::constant(7), {.label = "Beyond its end"}},
                      ProgressView{-3.0},
                      ProgressView{std::numeric_limits<double>::quiet_NaN()}};
    }
};
// [/]

// [Pages with dots]
struct Paging {
    State<int> page = 1;

    auto dynamicProperties() { return std::tie(page); }
    auto body() const
    {
        auto sheet = [](std::string title, const UIColor& color) {
            return Color{color}
            | overlay(Text{std::move(title)} | font(Font::title().bold())
                      | foregroundColor(UIColor::white()));
        };
        return TabView{page.binding(), sheet("One", UIColor::systemTeal()),
                       sheet("Two", UIColor::systemIndigo()),
                       sheet("Three", UIColor::systemPink())}
        | tabViewStyle(TabViewStyle::page) | frame({.height = 160}) | cornerRadius(12);
    }
};
// [/]

} // namespace

Page controlsPage()
{
    return {.name = "controls",
            .title = "Controls",
            .group = "Controls",
            .symbol = "slider.horizontal.3",
            .summary = "By mouse, touch, keyboard and assistive technology. They show "
                       "what their binding says, and a "
                       "binding may refuse.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"Buttons", "", AnyView(buttons())},
                    {"Slider and progress", "The bar follows the slider.",
                     AnyView(Sliding{})},
                    {"Switch and stepper", "", AnyView(Switching{})},
                    {"One of a few", "", AnyView(Choosing{})},
                    {"Text fields", "", AnyView(Typing{})},
                    {"Long, empty and out of range",
                     "Nobody asks for these; they come all the same.",
                     AnyView(Hostile{})},
                    {"Pages with dots", "Swipe, or press beside the dots.",
                     AnyView(Paging{})}};
            }};
}

} // namespace gallery
