// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVComposition.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Result.h"

#include <memory>

namespace zelk {

// What both exports share.

// The one serial queue of the process on which exports are set up. Any thread.
const std::shared_ptr<platform::DispatchQueue>& exportQueue();

// Adds a track for each of the asset's of that type, with all that it has at its own place. Rotations
// are kept. AVAssetError::couldNotAddMutableAudioTrack when the composition refuses one.
[[nodiscard]] platform::Result<void> addTracks(platform::AVMutableComposition& composition,
                                               const platform::AVAsset& asset, platform::AVMediaType type);

} // namespace zelk
