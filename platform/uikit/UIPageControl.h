// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A row of dots that says which page is seen. Its identity and what every control has; it draws nothing yet. Main thread only.
class UIPageControl : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
