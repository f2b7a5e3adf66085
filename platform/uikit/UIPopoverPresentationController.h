// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPresentationController.h"

namespace platform {

// A presentation in a bubble that points at what it belongs to. Main thread only.
class UIPopoverPresentationController : public UIPresentationController {
public:
    using UIPresentationController::UIPresentationController;
};

} // namespace platform
