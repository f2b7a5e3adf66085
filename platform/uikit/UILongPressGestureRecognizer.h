// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/UIGestureRecognizer.h"

namespace platform {

// A touch that stays where it is for a while. Begins when the time is over, changes while the finger then moves, ends
// when it leaves.
class UILongPressGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;
    double minimumPressDuration = 0.5; // seconds; nothing or less begins at once
    CGFloat allowableMovement = 10;    // points, until it begins
    UIPointerButton button = UIPointerButton::primary;

    void touchBegan(UITouch& touch) override;
    void touchMoved(UITouch& touch) override;
    void touchEnded(UITouch& touch) override;
    void reset() override;

private:
    CGPoint start_; // window
    Token timer_;
};

} // namespace platform
