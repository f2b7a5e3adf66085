// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/environment.h"

#include <optional>

namespace platform {

// How the controls of the content look.

enum class ButtonStyle {
    automatic,         // borderless
    plain,             // the label as it is; it dims while it is pressed
    borderless,        // the label in the tint colour
    bordered,          // the same on a ground
    borderedProminent, // on a ground of the tint colour, the label black or white, whichever is read on it
};
enum class ToggleStyle { automatic, switch_, button_ };
enum class ProgressViewStyle {
    automatic, // a bar where it is known how much is done, else a wheel
    linear,
    circular
};
enum class PickerStyle {
    automatic, // segmented
    segmented,
    menu, // a row of the label and a button that opens a menu
    wheel
};
enum class TextFieldStyle { automatic, roundedBorder, plain };
enum class LabelsVisibility { visible, hidden };

struct ButtonStyleKey : environment_keys::Key<ButtonStyle, ButtonStyle::automatic> { };
struct ToggleStyleKey : environment_keys::Key<ToggleStyle, ToggleStyle::automatic> { };
struct ProgressViewStyleKey : environment_keys::Key<ProgressViewStyle, ProgressViewStyle::automatic> { };
struct PickerStyleKey : environment_keys::Key<PickerStyle, PickerStyle::automatic> { };
struct TextFieldStyleKey : environment_keys::Key<TextFieldStyle, TextFieldStyle::automatic> { };
struct LabelsVisibilityKey : environment_keys::Key<LabelsVisibility, LabelsVisibility::visible> { };
// Of a button that stands for something on or off; none for other buttons.
struct ToggledStateKey : environment_keys::OptionalKey<bool> { };

inline auto buttonStyle(ButtonStyle style)
{
    return environment<ButtonStyleKey>(style);
}
inline auto toggleStyle(ToggleStyle style)
{
    return environment<ToggleStyleKey>(style);
}
inline auto progressViewStyle(ProgressViewStyle style)
{
    return environment<ProgressViewStyleKey>(style);
}
inline auto pickerStyle(PickerStyle style)
{
    return environment<PickerStyleKey>(style);
}
inline auto textFieldStyle(TextFieldStyle style)
{
    return environment<TextFieldStyleKey>(style);
}
// The labels beside controls are not shown; assistive technology is told of them all the same.
inline auto labelsHidden()
{
    return environment<LabelsVisibilityKey>(LabelsVisibility::hidden);
}
inline auto toggledState(std::optional<bool> isOn)
{
    return environment<ToggledStateKey>(isOn);
}

} // namespace platform
