// SPDX-License-Identifier: MIT
#include "kit/ui/Shimmer.h"

namespace zelk {

using platform::Animation;
using platform::LayoutDirection;
using platform::LinearGradient;
using platform::UIColor;

platform::LinearGradient ShimmerMask::gradientAt(bool isInitial) const
{
    if (direction == LayoutDirection::leftToRight)
        return isInitial ? LinearGradient{gradient, {min, min}, {0, 0}}
                         : LinearGradient{gradient, {1, 1}, {max, max}};
    return isInitial ? LinearGradient{gradient, {max, min}, {1, 0}}
                     : LinearGradient{gradient, {0, 1}, {min, max}};
}

const Animation& Shimmer::defaultAnimation()
{
    static const auto animation = Animation::linear(1.5).delay(0.25).repeatForever(false);
    return animation;
}

const Shimmer::Gradient& Shimmer::defaultGradient()
{
    static const auto gradient =
        LinearGradient::ofColors({UIColor::gray(0, 0.3), UIColor::black(), UIColor::gray(0, 0.3)}).stops;
    return gradient;
}

} // namespace zelk
