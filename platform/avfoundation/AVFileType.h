// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// What kind of file is written.
enum class AVFileType {
    quickTimeMovie, // "com.apple.quicktime-movie", .mov
    mpeg4,          // "public.mpeg-4", .mp4
    appleM4A,       // "com.apple.m4a-audio", .m4a; sound only
    wave,           // "com.microsoft.waveform-audio", .wav; one track of linear PCM
};

inline constexpr AVFileType AVFileTypeQuickTimeMovie = AVFileType::quickTimeMovie;
inline constexpr AVFileType AVFileTypeMPEG4 = AVFileType::mpeg4;
inline constexpr AVFileType AVFileTypeAppleM4A = AVFileType::appleM4A;
inline constexpr AVFileType AVFileTypeWAVE = AVFileType::wave;

} // namespace platform
