// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/uikit/UIEvent.h"

namespace platform {

// Tells single presses from the second, third ... of a multiple click: the same button, soon after, at nearly the same
// place.
class ClickCounter {
public:
    ClickCounter(Duration interval, CGFloat distance)
        : interval_(interval)
        , distance_(distance)
    {
    }

    // The number of this press within its row, from 1.
    int press(UIPointerButton button, CGPoint place, Instant time);

private:
    // fixed after construction
    Duration interval_;
    CGFloat distance_; // points, along either axis

    int count_ = 0;
    UIPointerButton button_ = UIPointerButton::primary;
    CGPoint place_;
    Instant time_;
};

} // namespace platform
