// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/AnimationTiming.h"

namespace platform {

// What moves a scroll view's content without a finger on it, told in steps: how far to go since the last time. A
// step knows nothing of positions, so it serves content whose place is no distance.
class ScrollMotion {
public:
    enum class Kind {
        wheel,        // the way left shrinks by a fixed part in each unit of time, and notches add to it
        deceleration, // the speed shrinks by a fixed part each millisecond
        animation,    // a way of known length in a known time
    };

    static ScrollMotion wheel(CGVector way, Instant now);
    // Points a second; `rate` is what remains of the speed after a millisecond, between 0 and 1.
    static ScrollMotion deceleration(CGVector speed, double rate, Instant now);
    static ScrollMotion animation(CGVector way, const AnimationTiming& timing, Instant now);

    Kind kind() const { return kind_; }
    // More to go, from here on.
    void extend(CGVector way, Instant now);
    // The points to go since the last call. Time that runs backwards counts as standing still.
    CGVector advance(Instant now);
    // Nothing takes the movement of this axis any more.
    void stopHorizontal();
    void stopVertical();
    bool isFinished() const { return isFinished_; }

private:
    ScrollMotion(Kind kind, CGVector left, Instant now);

    Kind kind_;
    CGVector left_; // points to go; the speed of a deceleration
    Instant last_;
    double rate_ = 0.998;
    AnimationTiming timing_;
    Instant start_;
    CGVector done_; // of an animation
    bool isFinished_ = false;
};

} // namespace platform
