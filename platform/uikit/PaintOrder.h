// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace platform {

// The subviews from back to front: by z position, and in the order of the tree where that is equal. A copy: what is
// called on the way may change the tree.
inline std::vector<std::shared_ptr<UIView>> paintOrder(const std::vector<std::shared_ptr<UIView>>& subviews)
{
    if (std::ranges::is_sorted(subviews, {}, &UIView::zPosition)) [[likely]]
        return subviews;
    std::multimap<CGFloat, std::shared_ptr<UIView>> ordered; // keeps the order of what is equal
    for (const auto& view : subviews)
        ordered.emplace(view->zPosition(), view);
    std::vector<std::shared_ptr<UIView>> result;
    for (auto& [position, view] : ordered)
        result.push_back(std::move(view));
    return result;
}

} // namespace platform
