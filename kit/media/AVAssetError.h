// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/LocalizedError.h"
#include "platform/foundation/NSError.h"

namespace zelk {

// Why an asset could not be exported. What the platform's media types report is passed on as it is instead.
enum class AVAssetError {
    assetNotExportable,
    missingAudioTrack,
    // Of tracks for pictures too.
    couldNotAddMutableAudioTrack,
    assetExportSessionCreationFailure,
    couldNotAddAudioOutputReader,
    // Never reported here; for callers.
    unsupportedFileFormat,
};

// Only the description is there. It is in the user's language, but for couldNotAddAudioOutputReader, which is always
// English. Any thread.
platform::LocalizedError localizedError(AVAssetError error);
// A domain named after the type; the code is the place in the list, from 0.
platform::NSError nsError(AVAssetError error);

} // namespace zelk
