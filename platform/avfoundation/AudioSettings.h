// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"

#include <optional>

namespace platform {

using AudioFormatID = FourCharCode;
inline constexpr AudioFormatID kAudioFormatLinearPCM = fourCharCode("lpcm");
inline constexpr AudioFormatID kAudioFormatMPEG4AAC = fourCharCode("aac ");
inline constexpr AudioFormatID kAudioFormatAppleLossless = fourCharCode("alac");

// How sound is read from a track or written to a file. The fields are the platform's keys; what is absent is
// taken from the source.
struct AudioSettings {
    AudioFormatID AVFormatIDKey = kAudioFormatLinearPCM;
    // Hertz.
    std::optional<double> AVSampleRateKey;
    std::optional<int> AVNumberOfChannelsKey;

    // Of linear PCM only. Without them samples are 16-bit integers, little-endian, channels interleaved.
    std::optional<int> AVLinearPCMBitDepthKey; // 8 (unsigned), 16, 24, 32; 32 and 64 of floating point
    std::optional<bool> AVLinearPCMIsFloatKey;
    std::optional<bool> AVLinearPCMIsBigEndianKey;
    std::optional<bool> AVLinearPCMIsNonInterleaved;

    // Of compressed formats only. Bits a second, all channels together.
    std::optional<int> AVEncoderBitRateKey;

    bool operator==(const AudioSettings&) const = default;
};

} // namespace platform
