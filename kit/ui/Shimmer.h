// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/ShimmerMask.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/mask.h"

#include <tuple>

namespace zelk {

// A band of light that sweeps over the content from its leading top corner to its trailing bottom one, for as long as the
// content is there: a placeholder while something loads. The gradient is a mask: where it is opaque the content is seen. It
// starts when the content appears, and anew when the layout direction changes; where motion is reduced it stands still.
// While nothing of the content is seen (hidden, covered, scrolled away) it costs nothing.
class Shimmer {
public:
    using Gradient = ShimmerMask::Gradient;

    // `bandSize` is the band's width as a part of the content's.
    Shimmer(platform::Animation animation, Gradient gradient, platform::CGFloat bandSize)
        : mask_{animation, std::move(gradient), 0 - bandSize, bandSize + 1}
    {
    }

    // Linear over 1.5 seconds, a quarter of a second later, for ever, always the same way.
    static const platform::Animation& defaultAnimation();
    // Black at 0.3, black, black at 0.3, at equal distances.
    static const Gradient& defaultGradient();

    template <platform::View Content>
    auto body(const Content& content) const
    {
        // Each direction is a place of its own, for a sweep cannot turn round on its way.
        auto mask = mask_;
        mask.direction = layoutDirection_;
        auto make = [&] { return mask; };
        return content
            | platform::mask(
                   platform::when(layoutDirection_ == platform::LayoutDirection::rightToLeft, make, make));
    }
    auto dynamicProperties() { return std::tie(layoutDirection_); }

    friend bool operator==(const Shimmer& a, const Shimmer& b) = default;

private:
    ShimmerMask mask_;
    platform::Environment<platform::LayoutDirectionKey> layoutDirection_;
};

} // namespace zelk
