// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPresentationController.h"

namespace platform {

// A presentation as a sheet over the lower part of the presenter. Main thread only.
class UISheetPresentationController : public UIPresentationController {
public:
    using UIPresentationController::UIPresentationController;
};

} // namespace platform
