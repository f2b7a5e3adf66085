// SPDX-License-Identifier: MIT
// The catalogue's types find the platform's control behind each declarative one.
#include "tests/introspect/Catalogue.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

namespace introspect {

using namespace platform;

namespace {

// Of three alike, `type` finds the one in the middle, which shows its value.
template <class Found, class ViewType>
void expectFound(const ViewType& type, View auto shown, bool (*showsValue)(const Found&))
{
    const AnyView view(std::move(shown));
    std::shared_ptr<Found> found;
    Screen screen(VStack{view,
                         view
                             | introspect(type, iOS(type.iOS.v17),
                                          [&](Found& entity) {
                                              found =
                                                  std::static_pointer_cast<Found>(entity.shared_from_this());
                                          }),
                         view});
    ASSERT_TRUE(found) << typeid(Found).name();
    EXPECT_EQ(found->window(), screen.window);
    EXPECT_TRUE(showsValue(*found)) << typeid(Found).name();
}

} // namespace

TEST(FoundControls, AreOfThePlatformsClass)
{
    auto amount = Binding<double>::constant(3);
    auto isOn = Binding<bool>::constant(true);
    auto text = Binding<std::string>::constant("abc");
    auto flavours = Picker<int>{"Flavour", Binding<int>::constant(2), {{1, "Lemon"}, {2, "Mint"}}};
    expectFound<UISlider>(slider, Slider{amount, {.in = {0, 10}}},
                          [](auto& found) { return found.value() == 3; });
    expectFound<UISwitch>(toggle, Toggle{"On", isOn}, [](auto& found) { return found.isOn(); });
    expectFound<UISwitch>(toggleWithSwitchStyle, Toggle{"On", isOn} | toggleStyle(ToggleStyle::switch_),
                          [](auto& found) { return found.isOn(); });
    expectFound<UIStepper>(stepper, Stepper{"Copies", amount},
                           [](auto& found) { return found.value() == 3; });
    expectFound<UIProgressView>(progressViewWithLinearStyle, ProgressView{0.25},
                                [](auto& found) { return found.progress() == 0.25; });
    expectFound<UIActivityIndicatorView>(progressViewWithCircularStyle, ProgressView{"Loading"},
                                         [](auto& found) { return found.isAnimating(); });
    expectFound<UISegmentedControl>(pickerWithSegmentedStyle, flavours | pickerStyle(PickerStyle::segmented),
                                    [](auto& found) { return found.selectedSegmentIndex() == 1; });
    expectFound<UIPickerView>(pickerWithWheelStyle, flavours | pickerStyle(PickerStyle::wheel),
                              [](auto& found) { return found.selectedRow(0) == 1; });
    expectFound<UIColorWell>(colorPicker, ColorPicker{"Tint", Binding<UIColor>::constant(UIColor::red())},
                             [](auto& found) { return found.selectedColor() == UIColor::red(); });
    expectFound<UIDatePicker>(datePickerWithWheelStyle,
                              DatePicker{"Departure", Binding<Date>::constant({1e9})},
                              [](auto& found) { return found.date() == Date{1e9}; });
    expectFound<UITextField>(textField, TextField{"Name", text},
                             [](auto& found) { return found.text() == "abc"; });
    expectFound<UITextField>(secureField, SecureField{"Secret", text},
                             [](auto& found) { return found.isSecureTextEntry(); });
    auto pages = TabView{Text{"a"}, Text{"b"}, Text{"c"}} | tabViewStyle(TabViewStyle::page);
    expectFound<UIPageControl>(pageControl, pages | frame({.width = 100, .height = 60}),
                               [](auto& found) { return found.numberOfPages() == 3; });
    int calls = 0;
    Screen screen(Toggle{"On", isOn} | toggleStyle(ToggleStyle::button_)
                  | introspect(toggle, iOS(toggle.iOS.v17), [&](UISwitch&) { ++calls; }));
    EXPECT_EQ(calls, 0) << "a button is no switch";
}

} // namespace introspect
