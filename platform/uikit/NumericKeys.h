// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIEvent.h"
#include "platform/uikit/ValueRange.h"

#include <optional>

namespace platform {

// What the keys do that change a number: arrows, Page Up and Down, Home and End. A value.
struct NumericKeys {
    ValueRange range; // a proper one
    double arrowStep = 0;
    double pageStep = 0;
    bool isRightToLeft = false; // the number grows to the left

    // Not clamped for the arrows, so that a control may go round; none for other keys, or with modifiers.
    std::optional<double> valueAfter(const UIPress& press, double value) const;
};

} // namespace platform
