// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

// A list beside its detail: the primary controller's view on the leading side, the secondary's in the rest. Where
// there is no room for both, only the secondary's is shown (the primary's when there is no secondary).
// Main thread only.
class UISplitViewController : public UIViewController {
public:
    enum class Column { primary, secondary };
    static constexpr CGFloat primaryColumnWidth = 320; // points, at most 0.4 of the whole
    static constexpr CGFloat minimumExpandedWidth = 600;

    // Null for an empty column.
    std::shared_ptr<UIViewController> viewController(Column column) const;
    // Replaces what the column showed; null empties it. Requires: not in the other column.
    void setViewController(std::shared_ptr<UIViewController> controller, Column column);
    // Of the columns that are not empty, the primary first.
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return contained_; }

    // Whether there is room for one column only. True before the view is loaded.
    bool isCollapsed() const;

    // Called when there is room for both columns, and was not, or the other way round: during layout, before the columns
    // get their places, so that what is in them can be moved.
    std::function<void()> onCollapseChange;

    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;

private:
    void arrange();
    void placeColumns(UIView& own);

    bool wasCollapsed_ = true;
    bool isArranging_ = false;
    std::array<std::shared_ptr<UIViewController>, 2> columns_;
    std::vector<std::shared_ptr<UIViewController>> contained_;
};

} // namespace platform
