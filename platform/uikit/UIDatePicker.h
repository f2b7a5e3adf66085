// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A choice of a date and a time. Its identity and what every control has; it draws nothing yet. Main thread only.
class UIDatePicker : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
