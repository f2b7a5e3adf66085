// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Animation.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/LinearGradient.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/animation.h"
#include "platform/swiftui/appearance.h"

#include <tuple>
#include <vector>

namespace zelk {

// The mask of a Shimmer: a gradient that lies before the leading top corner until it has appeared, and then moves beyond the
// trailing bottom one, as its animation has it.
struct ShimmerMask {
    using Gradient = std::vector<platform::GradientStop>;

    platform::Animation animation;
    Gradient gradient;
    platform::CGFloat min = 0; // where the band starts and ends; 0 and 1 are the content's edges
    platform::CGFloat max = 1;
    platform::LayoutDirection direction = platform::LayoutDirection::leftToRight;
    platform::State<bool> isInitialState{true};
    platform::Environment<platform::ReduceMotionKey> reducesMotion{};

    platform::LinearGradient gradientAt(bool isInitial) const;

    auto body() const
    {
        // Both ends look alike, so what stands still stands at the start and can set off from there.
        bool isInitial = isInitialState || reducesMotion;
        return gradientAt(isInitial) | platform::animation(animation, isInitial)
            | platform::onAppear([state = isInitialState] { state.set(false); });
    }
    auto dynamicProperties() { return std::tie(isInitialState, reducesMotion); }
    bool operator==(const ShimmerMask&) const = default;
};

} // namespace zelk
