// SPDX-License-Identifier: MIT
#include "kit/theme/hexString.h"

#include "kit/theme/uiColor.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zelk {

namespace {

unsigned long byteOf(platform::CGFloat component)
{
    auto legal = component > 0 ? std::min(component, 1.0) : 0.0; // what is no number is 0, too
    return static_cast<unsigned long>(std::lround(static_cast<float>(legal * 255.0)));
}

} // namespace

std::optional<std::string> hexString(const platform::UIColor& color)
{
    platform::CGFloat red = 0, green = 0, blue = 0, alpha = 0;
    if (!color.getRed(&red, &green, &blue, &alpha))
        return std::nullopt;
    char text[9];
    std::snprintf(text, sizeof text, "%02lX%02lX%02lX%02lX", byteOf(red), byteOf(green), byteOf(blue),
                  byteOf(alpha));
    return text;
}

std::optional<std::string> hexString(const platform::Color& color)
{
    auto plain = uiColor(color);
    return plain ? hexString(*plain) : std::nullopt;
}

} // namespace zelk
