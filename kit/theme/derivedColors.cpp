// SPDX-License-Identifier: MIT
#include "kit/theme/derivedColors.h"

#include "platform/graphics/CIColor.h"

namespace zelk {

namespace {

constexpr platform::CGFloat lightLuma = 0.55;

platform::CGFloat luma(const platform::CIColor& color)
{
    return 0.299 * color.red() + 0.587 * color.green() + 0.114 * color.blue();
}

} // namespace

platform::UIColor complementary(const platform::UIColor& color)
{
    platform::CIColor components(color);
    return {1 - components.red(), 1 - components.green(), 1 - components.blue(), components.alpha()};
}

platform::UIColor contrast(const platform::UIColor& color)
{
    platform::CIColor components(color);
    return platform::UIColor::gray(luma(components) < lightLuma ? 0 : 1, components.alpha());
}

const platform::UIColor& bestBackgroundColor(const platform::UIColor& color, const BackgroundChoice& choice)
{
    return luma(platform::CIColor(color)) > choice.threshold ? choice.dark : choice.bright;
}

} // namespace zelk
