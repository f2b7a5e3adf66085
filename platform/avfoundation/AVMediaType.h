// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// What a track carries.
enum class AVMediaType { video, audio, text, subtitle, timecode, metadata };

// Four ASCII letters, the first in the highest byte: how formats of media are named.
using FourCharCode = std::uint32_t;

consteval FourCharCode fourCharCode(std::string_view letters)
{
    FourCharCode code = 0;
    for (char letter : letters.substr(0, 4))
        code = code << 8 | static_cast<unsigned char>(letter);
    return code;
}

// The number that identifies a track within its asset. Tracks count from 1.
using CMPersistentTrackID = std::int32_t;
inline constexpr CMPersistentTrackID kCMPersistentTrackID_Invalid = 0;

} // namespace platform
