// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/avfoundation/FFmpegHandles_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace platform {

// How samples leave the resampler for a form of linear PCM: it knows no 24-bit samples and no foreign byte order.
AVSampleFormat sampleFormat(const CMAudioFormat& format);

// A stretch of linear PCM that is being filled from its start. Lengths are sample frames.
class PCMChunk {
public:
    PCMChunk(const CMAudioFormat& format, std::int64_t capacity);

    std::int64_t size() const { return size_; }
    std::int64_t room() const { return limit_ - size_; }
    // Leaves room for so many only, at most what there is.
    void limitRoom(std::int64_t frames) { limit_ = std::min(size_ + frames, capacity_); }

    // Where the next frames go, a plane a channel or one for all.
    std::array<std::uint8_t*, 64> end();
    void grow(std::int64_t frames) { size_ += frames; }
    void appendSilence(std::int64_t frames);

    // The bytes in the form asked for. Leaves the chunk empty.
    CMBlockBuffer takeBytes();

private:
    void closeUp();
    void packTo24Bits();
    void swapBytes(std::size_t width);

    CMAudioFormat format_;
    std::int64_t capacity_;
    std::int64_t limit_;
    std::int64_t size_ = 0;
    std::size_t planes_;
    std::size_t bytesPerFrame_; // of a plane, as the resampler writes
    std::vector<std::uint8_t> bytes_;
};

} // namespace platform
