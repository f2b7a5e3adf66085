// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/UIGestureRecognizer.h"

#include <map>

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
    // Two taps begin with one: a tap does not keep those from being recognised that need more of them.
    bool canPrevent(const UIGestureRecognizer& other) const override;
    bool isAwaitingTouches() const override;

private:
    void failAfter(Duration delay);
    void fail();

    std::size_t taps_ = 0;                           // finished
    std::size_t fingers_ = 0;                        // that came down for the present tap
    CGPoint start_;                                  // window, of the first tap
    std::map<const UITouch*, CGPoint> fingerStarts_; // window, of the present tap
    bool isRecognized_ = false;                      // although others may still keep it from being told
    Token timeout_;
};

} // namespace platform
