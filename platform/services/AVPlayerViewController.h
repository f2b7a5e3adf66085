// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

namespace platform {

// Plays media with the system's own controls. Its identity: it plays and shows nothing yet. Main thread only.
class AVPlayerViewController : public UIViewController {
public:
    using UIViewController::UIViewController;
};

} // namespace platform
