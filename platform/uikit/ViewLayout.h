// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/NSLayoutConstraint.h"
#include "platform/uikit/UIView.h"

#include <array>
#include <memory>
#include <vector>

namespace platform {

// What a view keeps when it has constraints or guides.
struct LayoutState {
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints; // active and solved by this view
    std::vector<std::shared_ptr<UILayoutGuide>> guides;
    std::shared_ptr<UILayoutGuide> safeAreaGuide;
    std::array<UILayoutPriority, 2> hugging{250, 250}; // by UILayoutAxis
    std::array<UILayoutPriority, 2> compression{750, 750};
};

// Solves the linear constraints of views. Main thread only.
class ViewLayout {
public:
    // Sets the frames of the views below `view` that the constraints it owns hold. Called by the default
    // layoutSubviews; nothing to do without constraints.
    static void solve(UIView& view);

    // The size near `target` that the constraints on and below `view` want.
    static CGSize fittingSize(UIView& view, CGSize target);

    // A constraint of `item` (a view or a guide) has changed: whoever solves it is to lay out again.
    static void constraintChanged(UIView& item);

    // `view` is about to leave its superview: constraints that reach from inside to outside are deactivated.
    static void willLeaveSuperview(UIView& view);

    // The content's wish has changed: whoever solves constraints of `view` is to lay out again.
    static void intrinsicContentSizeChanged(UIView& view);

    // The safe area, or the size, has changed: guides follow, and their constraints are solved again.
    static void safeAreaChanged(UIView& view);
};

} // namespace platform
