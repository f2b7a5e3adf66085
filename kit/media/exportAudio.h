// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/exportCompletion.h"

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/CMTimeRange.h"

#include <memory>

namespace zelk {

// Writes the part of the asset's first audio track within `timeRange` to a new WAVE file of 16 kHz, one channel, 16-bit
// linear PCM in the temporary directory. Its first sample is the one at the range's start, its length the range's. The range
// is cut to the asset; one that has nothing of it fails. The file is the receiver's to remove; what a failure leaves
// behind stays. Returns at once. Any thread; the asset must not change before the completion.
//
// Errors: AVAssetError, or what the platform reported.
void exportAudio(std::shared_ptr<platform::AVAsset> asset, const platform::CMTimeRange& timeRange,
                 ExportCompletion completion);

// Sets the export up on the calling thread; the rest happens on the export queue. A failure to set up is returned, and
// `completion` is not called then.
[[nodiscard]] platform::Result<void> _exportAudio(const std::shared_ptr<platform::AVAsset>& asset,
                                                  const platform::CMTimeRange& timeRange,
                                                  ExportCompletion completion);

} // namespace zelk
