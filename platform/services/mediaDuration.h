// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace platform {

// "0:07", "12:40", "1:02:03": whole seconds, rounded. What is no number of seconds is "0:00". Any thread.
inline std::string mediaDuration(double seconds)
{
    auto whole = std::isfinite(seconds) ? std::llround(std::clamp(seconds, 0.0, 359'999.0)) : 0;
    char text[24];
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

} // namespace platform
