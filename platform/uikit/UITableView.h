// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIScrollView.h"

namespace platform {

// A column of rows in sections. Its identity and what every scroll view has; its user adds the rows as subviews. Main thread only.
class UITableView : public UIScrollView {
public:
    using UIScrollView::UIScrollView;
};

} // namespace platform
