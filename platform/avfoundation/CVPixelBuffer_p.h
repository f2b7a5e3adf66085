// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/avfoundation/FFmpegHandles_p.h"

namespace platform {

struct CVPixelBuffer::Frame {
    // Never null, its format is one of CVPixelFormatType's.
    platform::Frame picture;
    CVPixelFormatType type;
};

AVPixelFormat pixelFormat(CVPixelFormatType type);

// The picture that `frame` holds, shared and not copied. Null when it is of another
// format or lies bottom up: it must be converted.
std::shared_ptr<CVPixelBuffer> makePixelBuffer(const AVFrame& frame, CVPixelFormatType type);

} // namespace platform
