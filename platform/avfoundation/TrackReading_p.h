// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AudioSettings.h"
#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/avfoundation/MediaSegment_p.h"
#include "platform/foundation/Result.h"

#include <memory>
#include <stop_token>
#include <vector>

namespace platform {

// What is to be read of a track.
struct TrackExtent {
    // Of the asset's timeline; starts at or after zero, its duration may be infinite.
    CMTimeRange range;
    // Cut to the range, by segmentsWithin.
    std::vector<MediaSegment> segments;
    std::stop_token stop;
};

// A track being read, in one of the forms that an output can ask for. One thread at a time.
class TrackReading {
public:
    TrackReading() = default;
    virtual ~TrackReading();
    TrackReading(const TrackReading&) = delete; // holds files that are being read
    TrackReading& operator=(const TrackReading&) = delete;

    // Null at the end; then and after an error it is not called again.
    virtual Result<std::shared_ptr<const CMSampleBuffer>> next() = 0;
};

// Whether there is linear PCM of that form.
bool isReadable(const AudioSettings& settings);

// Opens no file before the first call of next.
std::unique_ptr<TrackReading> makeSampleReading(TrackExtent extent);
std::unique_ptr<TrackReading> makeSoundReading(TrackExtent extent, const AudioSettings& settings);
std::unique_ptr<TrackReading> makePictureReading(TrackExtent extent, const PixelBufferAttributes& attributes);

} // namespace platform
