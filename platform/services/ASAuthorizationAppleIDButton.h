// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

// The button that signs in with the platform maker's account. Its identity and what every control has: no such
// account service exists on the desktop. Main thread only.
class ASAuthorizationAppleIDButton : public UIControl {
public:
    using UIControl::UIControl;
};

} // namespace platform
