// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/exportCompletion.h"

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/CMTimeRange.h"

#include <memory>

namespace zelk {

// Writes the part of the asset within `timeRange`, all of its pictures and sound, to a new QuickTime movie of at most
// 1920 x 1080 pixels in the temporary directory. The range is cut to the asset; one that has nothing of it fails. The file
// is the receiver's to remove; after a failure there is none. Returns at once. Any thread; the asset must not change
// before the completion.
//
// Errors: AVAssetError, or what the platform reported.
void exportVideo(std::shared_ptr<platform::AVAsset> asset, const platform::CMTimeRange& timeRange,
                 ExportCompletion completion);

} // namespace zelk
