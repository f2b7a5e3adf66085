// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// One row of a UITableView. Main thread only.
class UITableViewCell : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
