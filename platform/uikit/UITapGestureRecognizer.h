// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/UIGestureRecognizer.h"

namespace platform {

// One or more short touches in one place.
class UITapGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;
    std::size_t numberOfTapsRequired = 1;
    std::size_t numberOfTouchesRequired = 1;           // fingers
    UIPointerButton button = UIPointerButton::primary; // of a mouse; others fail

    void touchBegan(UITouch& touch) override;
    void touchMoved(UITouch& touch) override;
    void touchEnded(UITouch& touch) override;
    void reset() override;

private:
    void fail();

    std::size_t taps_ = 0;    // finished
    std::size_t fingers_ = 0; // that came down for the present tap
    CGPoint start_;           // window, of the first tap
    CGPoint fingerStart_;     // window, of the present one
    Token timeout_;
};

} // namespace platform
