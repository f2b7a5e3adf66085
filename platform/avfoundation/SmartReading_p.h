// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetReaderTrackOutput.h"
#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/H264ParameterSets_p.h"
#include "platform/avfoundation/TrackReading_p.h"
#include "platform/avfoundation/VideoSettings.h"
#include "platform/graphics/Geometry.h"

#include <memory>
#include <optional>

namespace platform {

// How a range of a track's H.264 pictures is copied where it can be: what lies between the range's start and the first
// picture that refers to nothing before it, and what cannot be copied at the end, is encoded anew with parameter sets of
// another number, so that one description holds for all.
struct SmartPlan {
    std::shared_ptr<const CMFormatDescription> sourceFormat;
    H264ParameterSets source;
    H264ParameterSets encoder;
    int encoderID = 0;
    VideoSettings settings;
    CVPixelFormatType pixels{};
    // The part of the asset's timeline that the track's pictures fill of the range.
    CMTimeRange range;
    CMTime firstCopied;
    // How many pictures may be decoded before one that is shown before them.
    int depth = 0;
    // Of what comes out.
    std::shared_ptr<const CMFormatDescription> format;
};

// Nothing when that cannot be made exact, or copies nothing: another codec, larger pictures than `largest`, interlaced
// ones, other than 8-bit 4:2:0, several pieces of media within the range, no picture to begin at. Reads the file up to that
// picture.
std::optional<SmartPlan> planSmartReading(const AVAssetTrack& track, const CMTimeRange& range,
                                          CGSize largest);

// Gives compressed samples.
std::unique_ptr<TrackReading> makeSmartReading(TrackExtent extent, SmartPlan plan);

// A reader's output that reads by a plan.
class SmartTrackOutput final : public AVAssetReaderTrackOutput {
public:
    SmartTrackOutput(std::shared_ptr<AVAssetTrack> track, SmartPlan plan)
        : AVAssetReaderTrackOutput(std::move(track), std::monostate())
        , plan_(std::move(plan))
    {
    }

protected:
    std::unique_ptr<TrackReading> makeReading(TrackExtent extent) override
    {
        return makeSmartReading(std::move(extent), plan_);
    }

private:
    const SmartPlan plan_;
};

} // namespace platform
