// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVVideoComposition.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <memory>
#include <optional>

namespace zelk {

struct FrameRequest {
    // Without one: 15 seconds into the asset if it is longer than that, else 1 second if it is longer than that, else
    // its middle.
    std::optional<platform::CMTime> at;
    // Pixels; the frame is made smaller to fit. Without one it is as large as the video.
    std::optional<platform::CGSize> maximumSize;
    std::optional<platform::AVVideoComposition> videoComposition;
};

// A frame of the asset's video, upright; one near the time will do, see AVAssetImageGenerator. Blocks the calling thread
// while it is decoded. Any thread; the asset must not change meanwhile.
//
// Errors: the image generator's.
[[nodiscard]] platform::Result<platform::UIImage> fetchFrame(const std::shared_ptr<platform::AVAsset>& asset,
                                                             const FrameRequest& request = {});

} // namespace zelk
