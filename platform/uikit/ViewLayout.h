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
    static constexpr UILayoutPriority defaultHugging = 250, defaultCompression = 750;
    std::array<UILayoutPriority, 2> hugging{defaultHugging, defaultHugging}; // by UILayoutAxis
    std::array<UILayoutPriority, 2> compression{defaultCompression, defaultCompression};
};

// Solves the linear constraints of views. Main thread only.
class ViewLayout {
public:
    // Sets the frames of the views below `view` that the constraints it owns hold. Called by the default
    // layoutSubviews; nothing to do without constraints.
    static void solve(UIView& view);

    // The size near `target` that the constraints on and below `view` want.
    static CGSize fittingSize(UIView& view, CGSize target);

    // Something that `view` solves has changed: it, and all whose solution takes part of its, are to lay out again.
    static void invalidate(UIView& view);

    // `view` is about to leave its superview: constraints that reach from inside to outside are deactivated.
    static void willLeaveSuperview(UIView& view);

    // The content's wish has changed: whoever solves constraints of `view` is to lay out again.
    static void intrinsicContentSizeChanged(UIView& view);

    // The safe area, or the size, has changed: guides follow, and their constraints are solved again.
    static void safeAreaChanged(UIView& view);

private:
    class System;
};

} // namespace platform
