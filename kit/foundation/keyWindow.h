// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIApplication.h"

#include <memory>

namespace platform {
class UIViewController;
class UIWindow;
} // namespace platform

namespace zelk {

// The window that has the keyboard; null when none of the application's has. Main thread only.
std::shared_ptr<platform::UIWindow> keyWindow(platform::UIApplication& application);
// Ends editing there: no view has the keyboard any more, unless the one that has it refuses to let go.
void hideKeyboard(platform::UIApplication& application);
// The controller that stands in front of all others there: the root's, or the last of those presented from it. Null when
// there is none.
std::shared_ptr<platform::UIViewController> topViewController();

} // namespace zelk
