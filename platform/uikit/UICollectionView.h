// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIScrollView.h"

namespace platform {

// Cells that a layout places freely. Its identity and what every scroll view has; its user adds the cells as
// subviews. Main thread only.
class UICollectionView : public UIScrollView {
public:
    using UIScrollView::UIScrollView;
};

} // namespace platform
