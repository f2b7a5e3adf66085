// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace platform {

// The subviews from back to front: by z position, and in the order of the tree where that is equal. A copy: what is
// called on the way may change the tree.
inline std::vector<std::shared_ptr<UIView>> paintOrder(const std::vector<std::shared_ptr<UIView>>& subviews)
{
    auto result = subviews;
    if (!std::ranges::is_sorted(result, {}, &UIView::zPosition))
        std::ranges::stable_sort(result, {}, &UIView::zPosition);
    return result;
}

} // namespace platform
