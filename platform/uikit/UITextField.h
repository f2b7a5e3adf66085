// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// A field for one line of text. Its identity and what every control has; it draws no text yet. Main thread only.
class UITextField : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
