// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A choice between on and off. Its identity and what every control has; it draws nothing yet. Main thread only.
class UISwitch : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
