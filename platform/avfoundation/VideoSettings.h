// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CVPixelBuffer.h"

#include <optional>

namespace platform {

using AVVideoCodecType = FourCharCode;
inline constexpr AVVideoCodecType AVVideoCodecTypeH264 = fourCharCode("avc1");

// What a decoder must know to do; the level is the encoder's choice.
enum class H264Profile { baseline, main, high };

inline constexpr H264Profile AVVideoProfileLevelH264BaselineAutoLevel = H264Profile::baseline;
inline constexpr H264Profile AVVideoProfileLevelH264MainAutoLevel = H264Profile::main;
inline constexpr H264Profile AVVideoProfileLevelH264HighAutoLevel = H264Profile::high;

// How pictures are compressed for a file. The fields are the platform's keys; what is absent is taken from the first
// picture that is appended.
struct VideoSettings {
    AVVideoCodecType AVVideoCodecKey = AVVideoCodecTypeH264;
    // Pixels; even numbers from 2 to 8192. Pictures of another size are scaled.
    std::optional<int> AVVideoWidthKey;
    std::optional<int> AVVideoHeightKey;
    // Bits a second. Without it the quality is constant.
    std::optional<int> AVVideoAverageBitRateKey;
    // From 0 to 1; used when there is no bit rate. 0.6 is hard to tell from the source.
    double AVVideoQualityKey = 0.6;
    // A key picture at least this often, in pictures.
    int AVVideoMaxKeyFrameIntervalKey = 250;
    // Whether pictures may refer to later ones, which makes files smaller.
    bool AVVideoAllowFrameReorderingKey = true;
    // High when absent, the smallest files.
    std::optional<H264Profile> AVVideoProfileLevelKey;
    // Pictures a second on average, for the encoder's planning only.
    std::optional<double> AVVideoExpectedSourceFrameRateKey;
    // What the numbers mean, said in the file; the pictures are not converted.
    std::optional<ColorDescription> AVVideoColorPropertiesKey;
    // Width of a pixel divided by its height.
    std::optional<double> AVVideoPixelAspectRatioKey;

    bool operator==(const VideoSettings&) const = default;
};

} // namespace platform
