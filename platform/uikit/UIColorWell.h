// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A choice of a colour. Its identity and what every control has; it draws nothing yet. Main thread only.
class UIColorWell : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
