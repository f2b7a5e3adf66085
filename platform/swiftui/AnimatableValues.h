// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"
#include "platform/uikit/AnimationTiming.h"

#include <functional>
#include <vector>

namespace platform {

// Numbers that move from what is on screen to what was set, on the display clock, when they are set where changes are
// animated. Main thread only.
class AnimatableValues {
public:
    // Numbers that only drawing shows need no frames while nobody draws: hidden, covered or off the screen they move on
    // unseen, and `drawn` finds them where they are by then.
    enum class Frames { always, whileDrawn };

    // `handleChange` is called at each frame while the numbers move.
    AnimatableValues(std::vector<double> values, std::function<void()> handleChange,
                     Frames frames = Frames::always);
    AnimatableValues(const AnimatableValues&) = delete; // a frame callback holds its address
    AnimatableValues& operator=(const AnimatableValues&) = delete;

    // Moves there under UIView::currentAnimation(), otherwise is there at once. So it is for another count of numbers.
    void set(std::vector<double> values);
    const std::vector<double>& values() const { return target_; }
    const std::vector<double>& presentation() const { return presentation_; }
    // The same, for drawing them now, which keeps the frames coming.
    const std::vector<double>& drawn();
    bool isMoving() const { return isMoving_; }

private:
    void step(Instant frameTime);
    void moveTo(Instant time);
    void requestFrames();
    double elapsed(Instant now) const;

    std::vector<double> start_, target_, presentation_;
    std::vector<double> speed_; // a second, that the movement began with; springs only
    std::function<void()> handleChange_;
    AnimationTiming timing_;
    Instant began_{};
    Token frames_;
    const Frames pace_;
    bool isMoving_ = false;
    bool isDrawn_ = false; // since the last frame
};

} // namespace platform
