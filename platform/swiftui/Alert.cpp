// SPDX-License-Identifier: MIT
#include "platform/swiftui/Alert.h"

#include "platform/uikit/systemText.h"

namespace platform {

namespace {

std::optional<std::string> textOf(std::optional<Text> text)
{
    return text ? std::optional(std::move(text->text)) : std::nullopt;
}

} // namespace

Alert::Button Alert::Button::cancel(std::function<void()> action)
{
    return {Kind::cancel, systemText(SystemText::cancel), std::move(action)};
}

Alert::Alert(Text titleText, std::optional<Text> messageText, std::optional<Button> dismissButton)
    : title(std::move(titleText.text))
    , message(textOf(std::move(messageText)))
    , primaryButton(dismissButton ? std::move(*dismissButton)
                                  : Button::default_(Text{systemText(SystemText::ok)}))
{
}

Alert::Alert(Text titleText, std::optional<Text> messageText, Button primary, Button secondary)
    : title(std::move(titleText.text))
    , message(textOf(std::move(messageText)))
    , primaryButton(std::move(primary))
    , secondaryButton(std::move(secondary))
{
}

} // namespace platform
