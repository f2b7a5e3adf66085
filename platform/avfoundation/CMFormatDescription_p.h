// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"

#include <span>

namespace platform {

struct CMFormatDescription::Parameters {
    CodecParameters codec;
    // Of the samples' own times; 0/1 for linear PCM that a reader made.
    AVRational timeBase{0, 1};
    // Of video, 0/1 when not known.
    AVRational frameRate{0, 1};
    AVRational pixelAspectRatio{1, 1};
};

// A copy of `codec` is kept.
std::shared_ptr<const CMFormatDescription> makeFormatDescription(const AVCodecParameters& codec,
                                                                 AVRational timeBase,
                                                                 AVRational frameRate = {0, 1},
                                                                 AVRational pixelAspectRatio = {1, 1});

// The same but for what a decoder must know before the first sample.
std::shared_ptr<const CMFormatDescription> withExtradata(const CMFormatDescription& format,
                                                         std::span<const std::uint8_t> extradata);

// The sample format and codec that linear PCM of that form has; AV_CODEC_ID_NONE when there is no such form.
AVCodecID pcmCodec(const CMAudioFormat& format);

} // namespace platform
