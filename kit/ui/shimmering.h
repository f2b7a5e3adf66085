// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/Shimmer.h"
#include "platform/swiftui/ModifiedContent.h"

#include <limits>
#include <utility>

namespace zelk {

using platform::operator|; // for who pipes a view of its own into a modifier of this namespace

struct ShimmeringOptions {
    bool active = true;
    platform::Animation animation = Shimmer::defaultAnimation();
    Shimmer::Gradient gradient = Shimmer::defaultGradient();
    platform::CGFloat bandSize = 0.3; // of the content's width
};

// The sweep by its numbers; seconds.
struct ShimmeringTiming {
    double duration = 1.5;
    bool bounce = false; // every second sweep runs back
    double delay = 0.25;
};

struct ShimmeringModifier {
    bool active = true;
    Shimmer shimmer;

    // Two places: switching makes the content anew, and the sweep begins at its start.
    template <platform::View Content>
    auto body(const Content& content) const
    {
        return platform::when(active, [&] { return content | shimmer; }, [&] { return content; });
    }
    friend bool operator==(const ShimmeringModifier& a, const ShimmeringModifier& b) = default;
};

// The content as a placeholder, or, not active, just as it is: `rows | shimmering({.active = isLoading})`
inline auto shimmering(ShimmeringOptions options = {})
{
    return ShimmeringModifier{options.active,
                              {options.animation, std::move(options.gradient), options.bandSize}};
}
// `rows | shimmering(isLoading, {.duration = 2, .bounce = true})`
inline auto shimmering(bool active, ShimmeringTiming timing)
{
    return shimmering(
        {.active = active,
         .animation =
             platform::Animation::linear(timing.duration).delay(timing.delay).repeatForever(timing.bounce)});
}

} // namespace zelk
