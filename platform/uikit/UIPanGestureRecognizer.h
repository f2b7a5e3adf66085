// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIGestureRecognizer.h"

#include <deque>

namespace platform {

// Touches that move together. Begins when they have moved `minimumDistance` from where they came down.
class UIPanGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;
    std::size_t minimumNumberOfTouches = 1;
    std::size_t maximumNumberOfTouches = std::numeric_limits<std::size_t>::max();
    CGFloat minimumDistance = 10; // points
    UIPointerButton button = UIPointerButton::primary;

    // The way since the gesture came down, or since it was set, in the coordinates of `in`.
    CGPoint translation(const UIView& in) const;
    void setTranslation(CGPoint translation, const UIView& in);
    // Points a second, of the last tenth of a second; zero when the touches rested before they left.
    CGPoint velocity(const UIView& in) const;

    void touchBegan(UITouch& touch) override;
    void touchMoved(UITouch& touch) override;
    void touchEnded(UITouch& touch) override;
    void touchCancelled(UITouch& touch) override;
    void reset() override;

private:
    struct Place {
        Instant time;
        CGPoint moved;
    };
    CGPoint middle() const;
    void note(Instant time);

    CGPoint moved_;      // window, since the start, unaffected by fingers that come and go
    CGPoint zero_;       // of moved_, where the translation counts from
    CGPoint lastMiddle_; // window
    std::deque<Place> track_;
};

} // namespace platform
