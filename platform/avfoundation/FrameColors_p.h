// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/FFmpegHandles_p.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace platform {

// What the numbers of a decoded picture mean, where it says so and where it does not.

inline bool isRGB(const AVFrame& frame)
{
    auto* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return format && (format->flags & AV_PIX_FMT_FLAG_RGB);
}

inline bool isFullRange(const AVFrame& frame)
{
    return frame.color_range == AVCOL_RANGE_JPEG || isRGB(frame) || frame.format == AV_PIX_FMT_YUVJ420P
        || frame.format == AV_PIX_FMT_YUVJ422P || frame.format == AV_PIX_FMT_YUVJ444P;
}

// What pictures that do not say so are meant in, by their size: as players do.
inline int matrixOf(const AVFrame& frame)
{
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
        return frame.colorspace;
    return frame.height > 576 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

} // namespace platform
