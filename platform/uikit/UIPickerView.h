// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// Wheels of values to choose from. Its identity; it draws nothing yet. Main thread only.
class UIPickerView : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
