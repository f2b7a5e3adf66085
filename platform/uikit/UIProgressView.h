// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// A bar that shows how much of a task is done. Its identity; it draws nothing yet. Main thread only.
class UIProgressView : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
