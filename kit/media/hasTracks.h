// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"

namespace zelk {

// False when the media cannot be read, too.
inline bool hasAudioTrack(const platform::AVAsset& asset)
{
    return !asset.tracksWithMediaType(platform::AVMediaType::audio).empty();
}

inline bool hasVideoTrack(const platform::AVAsset& asset)
{
    return !asset.tracksWithMediaType(platform::AVMediaType::video).empty();
}

} // namespace zelk
