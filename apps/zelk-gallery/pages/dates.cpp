// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/ColorPicker.h"
#include "platform/swiftui/DatePicker.h"
#include "platform/swiftui/Picker.h"
#include "platform/swiftui/Stepper.h"
#include "platform/swiftui/controlStyles.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::Spacing;

namespace {

// [A day]
struct Day {
    State<Date> departure = Date{1'772'532'000}; // the third of March 2026

    auto dynamicProperties() { return std::tie(departure); }
    auto body() const
    {
        constexpr auto date = DatePickerComponents::date;
        return DatePicker{
            "Departure", departure.binding(), {.displayedComponents = date}};
    }
};
// [/]

// [A time between nine and five]
struct Appointment {
    State<Date> time = Date{1'772'532'000};

    auto dynamicProperties() { return std::tie(time); }
    auto body() const
    {
        constexpr double hour = 3600;
        Date noon{1'772'539'200};
        return DatePicker{"Appointment",
                          time.binding(),
                          {.from = Date{noon.timeIntervalSince1970 - 3 * hour},
                           .to = Date{noon.timeIntervalSince1970 + 5 * hour},
                           .displayedComponents = DatePickerComponents::hourAndMinute}};
    }
};
// [/]

// [Colours]
struct Colouring {
    // The same by day and by night, as on paper.
    State<UIColor> ink = UIColor(0.27, 0.21, 0.62);
    State<UIColor> paper = UIColor(1, 0.91, 0.6);

    auto dynamicProperties() { return std::tie(ink, paper); }
    auto body() const
    {
        return VStack{{.spacing = Spacing::_200},
                      ColorPicker{"Ink", ink.binding()},
                      ColorPicker{"Paper", paper.binding()},
                      ColorPicker{"Not now", ink.binding()} | disabled(),
                      Color{*paper} | frame({.height = 48})
                          | overlay(Text{"Written on it"} | font(Font::title2().bold())
                                    | foregroundColor(*ink))
                          | cornerRadius(CornerRadius::_100)};
    }
};
// [/]

// [A menu and a wheel]
struct Choosing {
    State<int> size = 2;

    auto dynamicProperties() { return std::tie(size); }
    auto body() const
    {
        Picker<int> picker{
            "Size",
            size.binding(),
            {{0, "Small"}, {1, "Medium"}, {2, "Large"}, {3, "As large as it gets"}}};
        return VStack{{.spacing = Spacing::_200},
                      picker | pickerStyle(PickerStyle::menu),
                      picker | pickerStyle(PickerStyle::menu) | disabled(),
                      picker | pickerStyle(PickerStyle::wheel)};
    }
};
// [/]

// [Up and down]
struct Counting {
    State<double> guests = 2.0, least = 1.0;

    auto dynamicProperties() { return std::tie(guests, least); }
    auto body() const
    {
        auto count = std::to_string(static_cast<int>(*guests));
        return VStack{{.spacing = Spacing::_200},
                      Stepper{"Guests: " + count, guests.binding(), {.in = {1, 12}}},
                      Stepper{"At its lower end", least.binding(), {.in = {1, 2}}},
                      Stepper{"Not now", guests.binding(), {.in = {1, 12}}} | disabled()};
    }
};
// [/]

} // namespace

Page datesPage()
{
    return {
        .name = "dates",
        .title = "Dates and colours",
        .group = "Controls",
        .symbol = "calendar",
        .summary =
            "Wheels turn by wheel, drag and arrow keys; digits and letters go to what "
            "they begin.",
        .exhibits = [] {
            return std::vector<Exhibit>{
                {"A day", "In the order and the words of the locale.", AnyView(Day{})},
                {"A time between nine and five", "Others turn back.",
                 AnyView(Appointment{})},
                {"Colours", "Press a well for more.", AnyView(Colouring{})},
                {"A menu and a wheel", "", AnyView(Choosing{})},
                {"Up and down", "Held down it goes on.", AnyView(Counting{})}};
        }};
}

} // namespace gallery
