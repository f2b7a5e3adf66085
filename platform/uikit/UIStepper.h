// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// Two buttons that raise and lower a number. Its identity and what every control has; it draws nothing yet. Main thread only.
class UIStepper : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
