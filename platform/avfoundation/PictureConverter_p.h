// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/foundation/Result.h"

namespace platform {

// Brings decoded pictures into one of the forms of pixel buffers: shared as it is when it has that form already, else
// converted by its own colour tags. Transfer functions stay as they are. One thread at a time.
class PictureConverter {
public:
    explicit PictureConverter(const PixelBufferAttributes& attributes)
        : attributes_(attributes)
    {
    }

    Result<std::shared_ptr<const CVPixelBuffer>> convert(const AVFrame& frame);

private:
    Result<void> prepare(const AVFrame& frame, const CVPixelBuffer& target);

    const PixelBufferAttributes attributes_;
    Scaler scaler_;
};

} // namespace platform
