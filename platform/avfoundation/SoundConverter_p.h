// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/PCMChunk_p.h"
#include "platform/foundation/Result.h"

namespace platform {

// Turns decoded sound of one form into linear PCM: rate, channels, sample format. What comes out lies on the same
// timeline as what goes in: the first sample out is the first one in. One thread at a time.
class SoundConverter {
public:
    // The form of `frame`, whose samples are not taken yet.
    static Result<SoundConverter> open(const AVFrame& frame, const CMAudioFormat& output);

    // Whether `frame` has the form that this converts.
    bool fits(const AVFrame& frame) const;
    int inputRate() const { return rate_; }

    // Takes samples in, and out as many as the chunk has room for. `offset` and `count` are within the frame.
    Result<void> convert(const AVFrame& frame, int offset, int count, PCMChunk& chunk);
    Result<void> convert(const std::uint8_t* const* planes, int count, PCMChunk& chunk)
    {
        return run(planes, count, chunk);
    }
    // The same with silence, of at most silenceSize.
    static constexpr int silenceSize = 4096;
    Result<void> convertSilence(int count, PCMChunk& chunk);
    // Whether samples wait that found no room; to be taken out before more goes in.
    bool isBackedUp() const { return isBackedUp_; }
    Result<void> takeOut(PCMChunk& chunk);
    // Takes out what only comes at the end. Complete when it leaves room.
    Result<void> drain(PCMChunk& chunk);
    // The next samples that would come out do not.
    void drop(std::int64_t frames);

private:
    SoundConverter() = default;
    Result<void> run(const std::uint8_t* const* input, int count, PCMChunk& chunk);

    Resampler resampler_;
    AVSampleFormat format_ = AV_SAMPLE_FMT_NONE;
    int rate_ = 0;
    int channels_ = 0;
    bool isBackedUp_ = false;
    std::uint64_t mask_ = 0; // of the layout, 0 when it has no known places
    std::vector<std::uint8_t> silence_;
};

} // namespace platform
