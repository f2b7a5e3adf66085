// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// The field of a search with its buttons. Its identity; it draws nothing yet. Main thread only.
class UISearchBar : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
