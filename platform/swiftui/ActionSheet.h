// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Alert.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

// A choice of several ways, as a value; the modifier of actionSheet.h shows it.
struct ActionSheet {
    using Button = Alert::Button;

    // The buttons in the order given, but for the first that cancels, which stands last; further ones that cancel are
    // ordinary. A sheet without buttons has one that cancels.
    explicit ActionSheet(Text titleText, std::optional<Text> messageText = {},
                         std::vector<Button> choices = {})
        : title(std::move(titleText.text))
        , buttons(std::move(choices))
    {
        if (messageText)
            message = std::move(messageText->text);
        if (buttons.empty())
            buttons.push_back(Button::cancel());
    }

    std::string title;
    std::optional<std::string> message;
    std::vector<Button> buttons;
};

} // namespace platform
