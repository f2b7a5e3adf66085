// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A row of segments of which one is chosen. Its identity and what every control has; it draws nothing yet. Main thread only.
class UISegmentedControl : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
