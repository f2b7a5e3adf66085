// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"
#include "platform/uikit/AnimationTiming.h"

#include <functional>
#include <vector>

namespace platform {

// Numbers that move from what is on screen to what was set, on the display clock, when they are set where changes are
// animated. Nobody needs frames for what is hidden, covered or off the screen: there they move on unseen, and are where they
// are by then when they come back. Main thread only.
class AnimatableValues {
public:
    // `handleChange` is called at each frame while the numbers move. They are seen only by who asks `drawn`, and then there
    // is to be another frame.
    AnimatableValues(std::vector<double> values, std::function<void()> handleChange);
    // The same for what others draw: `isSeen` says at each frame whether they may be seen on their way. While they may not,
    // the next frame is asked for when something else changes on screen.
    AnimatableValues(std::vector<double> values, std::function<void()> handleChange,
                     std::function<bool()> isSeen);
    AnimatableValues(const AnimatableValues&) = delete; // a frame callback holds its address
    AnimatableValues& operator=(const AnimatableValues&) = delete;

    // Moves there under UIView::currentAnimation(), otherwise is there at once. So it is for another count of numbers.
    void set(std::vector<double> values);
    const std::vector<double>& values() const { return target_; }
    const std::vector<double>& presentation() const { return presentation_; }
    // The same, for drawing them now, which keeps the frames coming.
    const std::vector<double>& drawn();
    bool isMoving() const { return isMoving_; }
    const std::vector<double>& start() const { return start_; } // of the movement

private:
    void step(Instant frameTime);
    void moveTo(Instant time);
    void requestFrames();
    void showAgain();
    double elapsed(Instant now) const;

    std::vector<double> start_, target_, presentation_;
    std::vector<double> speed_; // a second, that the movement began with; springs only
    std::function<void()> handleChange_;
    AnimationTiming timing_;
    Instant began_{};
    Token frames_;
    Token changes_;                      // of the screen, while nobody sees the numbers
    const std::function<bool()> isSeen_; // none: who draws says so
    bool isMoving_ = false;
    bool isDrawn_ = false; // since the last frame
};

} // namespace platform
