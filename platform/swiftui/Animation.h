// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/AnimationTiming.h"

#include <limits>
#include <utility>

namespace platform {

// How changes on screen move, as a value. Durations are seconds.
class Animation {
public:
    // Eases in and out over 0.35 seconds.
    Animation() = default;
    explicit Animation(AnimationTiming timing)
        : timing_(timing)
    {
    }

    static Animation linear(double duration = 0.35) { return Animation(AnimationTiming::linear(duration)); }
    static Animation easeIn(double duration = 0.35) { return Animation(AnimationTiming::easeIn(duration)); }
    static Animation easeOut(double duration = 0.35) { return Animation(AnimationTiming::easeOut(duration)); }
    static Animation easeInOut(double duration = 0.35)
    {
        return Animation(AnimationTiming::easeInOut(duration));
    }
    static Animation spring(double response = 0.55, double dampingFraction = 0.825)
    {
        return Animation(AnimationTiming::spring(response, dampingFraction));
    }

    Animation delay(double seconds) const
    {
        auto changed = *this;
        changed.timing_.delay += seconds;
        return changed;
    }
    Animation speed(double factor) const
    {
        auto changed = *this;
        changed.timing_.speed *= factor;
        return changed;
    }
    Animation repeatCount(int count, bool autoreverses = true) const
    {
        auto changed = cycle();
        changed.timing_.repeatCount = count;
        changed.timing_.autoreverses = autoreverses;
        return changed;
    }
    Animation repeatForever(bool autoreverses = true) const
    {
        auto changed = cycle();
        changed.timing_.repeatCount = std::numeric_limits<double>::infinity();
        changed.timing_.autoreverses = autoreverses;
        return changed;
    }

    const AnimationTiming& timing() const { return timing_; }
    bool operator==(const Animation&) const = default;

private:
    // What is repeated: a delay so far belongs to it, one that follows does not.
    Animation cycle() const
    {
        auto changed = *this;
        changed.timing_.cycleDelay += std::exchange(changed.timing_.delay, 0) * changed.timing_.speed;
        return changed;
    }

    AnimationTiming timing_;
};

} // namespace platform
