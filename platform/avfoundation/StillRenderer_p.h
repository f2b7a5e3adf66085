// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/DisplayColors_p.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <optional>

namespace platform {

struct StillShape {
    // Pixels; see AVAssetImageGenerator.
    CGSize maximumSize;
    // From the picture, made to have square pixels, to what is shown; where that lies does not matter.
    CGAffineTransform transform;
    // Width of a pixel divided by its height.
    double pixelAspectRatio = 1;
};

// `size` within `maximum`: not larger, in whole pixels, at least one.
CGSize fittedStillSize(CGSize size, CGSize maximum);

// Makes images of decoded pictures: scaled, upright, in a display's colours. One thread at a time.
class StillRenderer {
public:
    explicit StillRenderer(const StillShape& shape)
        : shape_(shape)
    {
    }

    Result<UIImage> render(const AVFrame& frame);

private:
    Result<Frame> prepare(const AVFrame& frame, int width, int height);
    Result<Frame> convert(const AVFrame& frame, int width, int height, AVPixelFormat format);

    const StillShape shape_;
    Scaler scaler_;
    std::optional<DisplayColors> colors_;
};

} // namespace platform
