// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVVideoComposition.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/combine/AnyPublisher.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <memory>
#include <optional>
#include <vector>

namespace zelk {

// Each value holds all thumbnails so far, in the order they were made: of their times, whatever order was asked for.
using ThumbnailsPublisher = platform::AnyPublisher<std::vector<platform::UIImage>>;

struct ThumbnailsByCount {
    // Spread evenly: the first at the start, the last one step before the end.
    int count;
    // Pixels; a thumbnail is made smaller to fit. See AVAssetImageGenerator.
    platform::CGSize maximumSize;
    std::optional<platform::AVVideoComposition> videoComposition;
    platform::CMTime requestedTimeToleranceBefore;
    platform::CMTime requestedTimeToleranceAfter;
};

struct ThumbnailsAtTimes {
    // Seconds, in any order.
    std::vector<double> times;
    platform::CGSize maximumSize;
    std::optional<platform::AVVideoComposition> videoComposition;
    platform::CMTime requestedTimeToleranceBefore;
    platform::CMTime requestedTimeToleranceAfter;
};

// Upright thumbnails of the asset's video, a growing array of them. They are made from the call on, whoever
// subscribes, and all of them whoever cancels; subscribe at once, on the main thread, where values arrive.
//
// The stream never finishes: the last value is the one as long as there are times. The first thumbnail that cannot be made
// fails it, with the image generator's error.
ThumbnailsPublisher thumbnailsPublisher(std::shared_ptr<platform::AVAsset> asset,
                                        const ThumbnailsAtTimes& request);

// The same for evenly spread times; rounding may make one less than `count`. An asset without a positive, finite duration
// and a size with a zero side make one empty array and the end, and a line in the log. May read the file.
// Requires: the step between two times is not zero.
ThumbnailsPublisher thumbnailsPublisher(std::shared_ptr<platform::AVAsset> asset,
                                        const ThumbnailsByCount& request);

} // namespace zelk
