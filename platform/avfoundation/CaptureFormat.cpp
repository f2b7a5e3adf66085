// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CaptureFormat_p.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace platform {

namespace {

struct Pixels {
    std::uint32_t fourCC;
    const char* name;
    int cost; // of making a picture of them
};

constexpr std::array known{
    Pixels{V4L2_PIX_FMT_NV12, "nv12", 0},       Pixels{V4L2_PIX_FMT_YUV420, "yuv420p", 0},
    Pixels{V4L2_PIX_FMT_YUYV, "yuyv422", 1},    Pixels{V4L2_PIX_FMT_UYVY, "uyvy422", 1},
    Pixels{V4L2_PIX_FMT_YUV422P, "yuv422p", 1}, Pixels{V4L2_PIX_FMT_RGB24, "rgb24", 1},
    Pixels{V4L2_PIX_FMT_BGR24, "bgr24", 1},     Pixels{V4L2_PIX_FMT_MJPEG, "mjpeg", 2},
    Pixels{V4L2_PIX_FMT_JPEG, "mjpeg", 2},      Pixels{V4L2_PIX_FMT_H264, "h264", 3},
    Pixels{V4L2_PIX_FMT_GREY, "gray", 4}, // the infrared camera beside the real one
};

int costOf(const std::string& pixels)
{
    auto* found = std::ranges::find(known, pixels, &Pixels::name);
    return found == known.end() ? 9 : found->cost;
}

} // namespace

const char* capturePixels(std::uint32_t fourCC)
{
    auto* found = std::ranges::find(known, fourCC, &Pixels::fourCC);
    return found == known.end() ? nullptr : found->name;
}

std::optional<CaptureFormat> bestCaptureFormat(std::span<const CaptureFormat> formats,
                                               const CaptureWish& wish)
{
    // Lower is better, the first that differs counts.
    auto rank = [&](const CaptureFormat& format) {
        auto pixels = static_cast<double>(format.width) * format.height;
        auto wanted = static_cast<double>(wish.width) * wish.height;
        auto isGrey = format.pixels == "gray";
        auto isSlow = format.frameRate > 0 && format.frameRate < wish.frameRate * 0.8;
        auto isSmall = format.width < wish.width && format.height < wish.height;
        return std::tuple(isGrey, isSlow, isSmall, std::abs(std::log(std::max(pixels, 1.0) / wanted)),
                          costOf(format.pixels), -format.frameRate);
    };
    auto best = std::ranges::min_element(formats, {}, rank);
    return best == formats.end() ? std::nullopt : std::optional(*best);
}

} // namespace platform
