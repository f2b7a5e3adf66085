// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ActionSheet.h"
#include "platform/swiftui/Alert.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

// What one alert controller shows: an alert, or an action sheet.
struct AlertContent {
    AlertContent(const Alert& alert)
        : title(alert.title)
        , message(alert.message)
        , buttons{alert.primaryButton}
    {
        if (alert.secondaryButton)
            buttons.push_back(*alert.secondaryButton);
    }
    AlertContent(const ActionSheet& sheet)
        : isActionSheet(true)
        , title(sheet.title)
        , message(sheet.message)
        , buttons(sheet.buttons)
    {
    }

    bool isActionSheet = false;
    std::string title;
    std::optional<std::string> message;
    std::vector<Alert::Button> buttons;
};

} // namespace platform
