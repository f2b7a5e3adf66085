// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

// One cell of a UICollectionView. Main thread only.
class UICollectionViewCell : public UIView {
public:
    using UIView::UIView;
};

} // namespace platform
