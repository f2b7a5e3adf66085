// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CaptureHardware.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace platform {

// One way in which a camera gives its pictures.
struct CaptureFormat {
    std::string pixels; // as the codec library calls it: "yuyv422", "nv12", "mjpeg", "h264", ...
    int width = 0, height = 0;
    double frameRate = 0; // the most at that size; 0: not known
    bool operator==(const CaptureFormat&) const = default;
};

// The codec library's name for a kernel's four letters; null for what it does not read.
const char* capturePixels(std::uint32_t fourCC);

// The one that comes nearest to the wish: fast enough before large enough, then nearest in size, then what costs least to
// decode. Nothing of nothing.
std::optional<CaptureFormat> bestCaptureFormat(std::span<const CaptureFormat> formats,
                                               const CaptureWish& wish);

} // namespace platform
