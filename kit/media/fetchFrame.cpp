// SPDX-License-Identifier: MIT
#include "kit/media/fetchFrame.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"

namespace zelk {

using namespace platform;

namespace {

CMTime representativeTime(const CMTime& duration)
{
    constexpr CMTimeScale scale = 600;
    if (auto time = CMTime::makeWithSeconds(15, scale); time < duration)
        return time;
    if (auto time = CMTime::makeWithSeconds(1, scale); time < duration)
        return time;
    return duration.multipliedByFloat(0.5);
}

} // namespace

Result<UIImage> fetchFrame(const std::shared_ptr<AVAsset>& asset, const FrameRequest& request)
{
    AVAssetImageGenerator generator(asset);
    generator.setAppliesPreferredTrackTransform(true);
    if (request.maximumSize)
        generator.setMaximumSize(*request.maximumSize);
    if (request.videoComposition)
        generator.setVideoComposition(request.videoComposition);
    return generator.copyCGImage(request.at ? *request.at : representativeTime(asset->duration()));
}

} // namespace zelk
