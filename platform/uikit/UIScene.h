// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIResponder.h"

namespace platform {

// Something of the application that stands on the desktop of its own: UIWindowScene, or another kind. While it is
// connected it is among UIApplication::connectedScenes(), which keeps it alive. Main thread only.
class UIScene : public UIResponder {
public:
    bool isConnected() const { return isConnected_; }

protected:
    // Each does nothing when it is so already.
    void connect(); // after the scenes that are connected
    void disconnect();

private:
    bool isConnected_ = false;
};

} // namespace platform
