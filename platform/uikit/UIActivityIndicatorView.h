// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// A wheel that turns while a task of unknown length runs. Its identity; it draws nothing yet. Main thread only.
class UIActivityIndicatorView : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
