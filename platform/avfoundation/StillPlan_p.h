// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/StillMoment_p.h"

#include <optional>
#include <vector>

namespace platform {

// What a generator is told before it is asked.
struct StillSettings {
    bool appliesPreferredTrackTransform = false;
    CGSize maximumSize;
    CMTime toleranceBefore = CMTime::positiveInfinity();
    CMTime toleranceAfter = CMTime::positiveInfinity();
    std::optional<AVVideoComposition> videoComposition;
};

// A track's picture within a composition's.
struct StillLayer {
    CGAffineTransform transform;
    double opacity = 1;
};

struct StillRequest {
    CMTime requestedTime;
    // Why there can be no picture.
    std::optional<Error> error;
    // Its pictures come into the slots from here on: one, or one for each layer.
    std::size_t firstSlot = 0;
    std::size_t slotCount = 0;
    // Of a composition: the time of its frame, the layers from the top down, and what is beneath them.
    CMTime frameTime;
    std::vector<StillLayer> layers;
    UIColor backgroundColor;
};

// What has to be decoded for a list of requested times, sorted by the streams it is in.
struct StillPlan {
    StillSettings settings;
    std::vector<StillRequest> requests;
    std::vector<std::size_t> requestOfSlot;
    std::vector<StillSession> sessions;

    // Of what decoding gives: a composition takes pictures as large as they are.
    CGSize maximumSize() const { return settings.videoComposition ? CGSize{} : settings.maximumSize; }
};

// May read the file.
StillPlan planStills(const AVAsset& asset, const StillSettings& settings,
                     const std::vector<AVRequestedTime>& times);

// Lays the pictures of a composition's frame together; a layer without one is left out.
Result<UIImage> composeStill(const StillPlan& plan, const StillRequest& request,
                             const std::vector<std::optional<UIImage>>& pictures);

} // namespace platform
