// SPDX-License-Identifier: MIT
// The catalogue's types find the platform's control behind each declarative one.
#include "introspect/ViewTypes.h"
#include "introspect/introspect.h"
#include "platform/swiftui/ColorPicker.h"
#include "platform/swiftui/DatePicker.h"
#include "platform/swiftui/Picker.h"
#include "platform/swiftui/ProgressView.h"
#include "platform/swiftui/Slider.h"
#include "platform/swiftui/Stepper.h"
#include "platform/swiftui/TextField.h"
#include "platform/swiftui/Toggle.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIColorWell.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UIPickerView.h"
#include "platform/uikit/UIProgressView.h"
#include "platform/uikit/UISegmentedControl.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UIStepper.h"
#include "platform/uikit/UISwitch.h"
#include "platform/uikit/UITextField.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

#include <memory>

namespace introspect {

using namespace platform;

namespace {

// The one that `type` finds in `view` beside another of its kind.
template <class Found, class ViewType, class V>
std::shared_ptr<Found> foundIn(const ViewType& type, const V& view)
{
    std::shared_ptr<Found> found;
    Screen screen(VStack{view,
                         view
                             | introspect(type, iOS(startingAt(type.iOS.v13)),
                                          [&](Found& entity) {
                                              found =
                                                  std::static_pointer_cast<Found>(entity.shared_from_this());
                                          }),
                         view});
    EXPECT_TRUE(!found || found->window() == screen.window);
    return found;
}

std::shared_ptr<UIColorWell> foundWellIn(const ColorPicker& view)
{
    std::shared_ptr<UIColorWell> found;
    Screen screen(VStack{
        view, view | introspect(colorPicker, iOS(startingAt(colorPicker.iOS.v14)), [&](UIColorWell& well) {
                  found = std::static_pointer_cast<UIColorWell>(well.shared_from_this());
              })});
    return found;
}

} // namespace

TEST(FoundControls, AreOfThePlatformsClass)
{
    auto amount = Binding<double>::constant(3);
    auto isOn = Binding<bool>::constant(true);
    auto text = Binding<std::string>::constant("abc");

    auto foundSlider = foundIn<UISlider>(slider, Slider{amount, {.in = {0, 10}}});
    ASSERT_NE(foundSlider, nullptr);
    EXPECT_EQ(foundSlider->value(), 3);
    EXPECT_NE(foundIn<UISwitch>(toggle, Toggle{"On", isOn}), nullptr);
    auto foundSwitch =
        foundIn<UISwitch>(toggleWithSwitchStyle, Toggle{"On", isOn} | toggleStyle(ToggleStyle::switch_));
    ASSERT_NE(foundSwitch, nullptr);
    EXPECT_TRUE(foundSwitch->isOn());
    EXPECT_EQ(foundIn<UISwitch>(toggle, Toggle{"On", isOn} | toggleStyle(ToggleStyle::button_)), nullptr);
    EXPECT_NE(foundIn<UIStepper>(stepper, Stepper{"Copies", amount}), nullptr);
    auto foundBar = foundIn<UIProgressView>(progressViewWithLinearStyle, ProgressView{0.25});
    ASSERT_NE(foundBar, nullptr);
    EXPECT_EQ(foundBar->progress(), 0.25);
    auto foundWheel =
        foundIn<UIActivityIndicatorView>(progressViewWithCircularStyle, ProgressView{"Loading"});
    ASSERT_NE(foundWheel, nullptr);
    EXPECT_TRUE(foundWheel->isAnimating());
    auto foundSegments = foundIn<UISegmentedControl>(
        pickerWithSegmentedStyle,
        Picker<int>{"Flavour", Binding<int>::constant(2), {{1, "Lemon"}, {2, "Mint"}}}
            | pickerStyle(PickerStyle::segmented));
    ASSERT_NE(foundSegments, nullptr);
    EXPECT_EQ(foundSegments->selectedSegmentIndex(), 1);
    auto flavours = Picker<int>{"Flavour", Binding<int>::constant(2), {{1, "Lemon"}, {2, "Mint"}}};
    auto foundWell = foundWellIn(ColorPicker{"Tint", Binding<UIColor>::constant(UIColor::red())});
    ASSERT_NE(foundWell, nullptr);
    EXPECT_EQ(foundWell->selectedColor(), UIColor::red());
    auto foundPicker =
        foundIn<UIPickerView>(pickerWithWheelStyle, flavours | pickerStyle(PickerStyle::wheel));
    ASSERT_NE(foundPicker, nullptr);
    EXPECT_EQ(foundPicker->selectedRow(0), 1);
    auto foundDate = foundIn<UIDatePicker>(datePickerWithWheelStyle,
                                           DatePicker{"Departure", Binding<Date>::constant({1e9})});
    ASSERT_NE(foundDate, nullptr);
    EXPECT_EQ(foundDate->date(), Date{1e9});
    auto foundField = foundIn<UITextField>(textField, TextField{"Name", text});
    ASSERT_NE(foundField, nullptr);
    EXPECT_EQ(foundField->text(), "abc");
    auto foundSecret = foundIn<UITextField>(secureField, SecureField{"Secret", text});
    ASSERT_NE(foundSecret, nullptr);
    EXPECT_TRUE(foundSecret->isSecureTextEntry());
}

} // namespace introspect
