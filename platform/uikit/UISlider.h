// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A choice of a number in a range. Its identity and what every control has; it draws nothing yet. Main thread only.
class UISlider : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
