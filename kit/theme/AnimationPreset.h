// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Animation.h"

namespace zelk {

// The three speeds at which the kit's elements move. Durations are seconds; all ease in and out.
struct AnimationPreset {
    AnimationPreset() = delete; // a family of constants

    static constexpr double fastAnimationDuration = 0.1;
    static constexpr double mediumAnimationDuration = 0.2;
    static constexpr double slowAnimationDuration = 0.25;

    static platform::Animation fast() { return platform::Animation::easeInOut(fastAnimationDuration); }
    static platform::Animation medium() { return platform::Animation::easeInOut(mediumAnimationDuration); }
    static platform::Animation slow() { return platform::Animation::easeInOut(slowAnimationDuration); }
};

} // namespace zelk
