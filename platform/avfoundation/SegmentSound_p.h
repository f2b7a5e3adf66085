// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/FrameReader_p.h"
#include "platform/avfoundation/MediaSegment_p.h"
#include "platform/avfoundation/SoundConverter_p.h"

#include <optional>

namespace platform {

// The sound of one segment as linear PCM, from the segment's start. Samples are placed by their times: what is missing
// in the middle is silence, what comes twice is dropped; deviations below some milliseconds are the container's
// rounding and are not followed. One thread at a time.
class SegmentSound {
public:
    static Result<std::unique_ptr<SegmentSound>> open(const MediaSegment& segment,
                                                      const CMAudioFormat& format, std::stop_token stop);

    // Fills `chunk`. It has room left only when the source has ended.
    Result<void> read(PCMChunk& chunk);

private:
    SegmentSound(std::unique_ptr<FrameReader> reader, const CMTime& start, const CMAudioFormat& format);
    Result<void> step(PCMChunk& chunk);
    Result<void> meetFrame(PCMChunk& chunk);
    Result<void> openConverter(PCMChunk& chunk);
    std::int64_t timeOfFrame() const;
    void placeFrame();
    Result<void> feed(PCMChunk& chunk);
    Result<void> finish(PCMChunk& chunk);

    std::unique_ptr<FrameReader> reader_;
    const CMTime start_; // of the source
    const CMAudioFormat format_;
    std::optional<SoundConverter> converter_;
    Frame frame_;
    enum class FrameState { none, met, placed } frameState_ = FrameState::none;
    bool isFinishing_ = false;  // the converter has been given all
    bool hasEnded_ = false;     // the source
    int offset_ = 0;            // into frame_
    std::int64_t silence_ = 0;  // due before the rest of frame_
    int rate_ = 0;              // of position_; 0 before the first frame
    std::int64_t position_ = 0; // of what the converter is given next, in samples of the source
    std::int64_t skew_ = 0;     // what the source's times are ahead by, for no reason
    bool isPlaced_ = false;     // whether position_ has met the source's samples
    std::int64_t produced_ = 0; // sample frames that came out
};

} // namespace platform
