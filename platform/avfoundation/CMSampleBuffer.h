// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/avfoundation/CVPixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace platform {

// Bytes with somebody who keeps them alive. Copying it copies no bytes.
struct CMBlockBuffer {
    std::span<const std::byte> bytes;
    std::shared_ptr<const void> owner;
};

// A piece of a track: sound samples, or one compressed sample, or one picture. Immutable once handed out, so any
// thread may read it.
struct CMSampleBuffer {
    std::shared_ptr<const CMFormatDescription> formatDescription;
    // Invalid for compressed pictures of containers that do not keep it (AVI): the decoder finds out.
    CMTime presentationTimeStamp;
    // Invalid where it equals the presentation time.
    CMTime decodeTimeStamp;
    CMTime duration;
    // Of linear PCM the sample frames (one sample of each channel), otherwise 1.
    std::int64_t sampleCount = 1;
    // Linear PCM that is not interleaved has all samples of the first channel, then of the second, ... Empty for
    // a picture.
    CMBlockBuffer data;
    // Of decoded video only.
    std::shared_ptr<const CVPixelBuffer> imageBuffer;
    // Whether decoding can begin here. Of pictures and sound always true.
    bool isSync = true;
    // Of compressed sound: what a decoder gives for this sample and nobody is to hear. Zero where nothing is.
    CMTime trimDurationAtStart;
    CMTime trimDurationAtEnd;
};

} // namespace platform
