// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <vector>

namespace platform {

// Calls `before` for each controller whose view is `view` or inside of it, on the way down the tree, and `after` on the way
// up. Either may change the tree: what was there when the walk came by is walked. Main thread only.
template <class Before, class After>
void eachController(UIView& view, const Before& before, const After& after)
{
    auto keptAlive = view.weak_from_this().lock();
    auto controller = view.viewController();
    if (controller)
        before(*controller);
    for (const auto& subview : std::vector(view.subviews()))
        eachController(*subview, before, after);
    if (controller)
        after(controller);
}

} // namespace platform
