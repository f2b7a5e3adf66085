// SPDX-License-Identifier: MIT
#include "kit/media/AVAssetError.h"

#include "kit/foundation/zelkKitLocalized.h"

#include <string>

namespace zelk {

namespace {

std::string description(AVAssetError error)
{
    switch (error) {
    case AVAssetError::assetNotExportable:
        return zelkKitLocalized("AVASSET_ERROR_ASSET_NOT_EXPORTABLE");
    case AVAssetError::missingAudioTrack:
        return zelkKitLocalized("AVASSET_ERROR_ASSET_MISSING_AUDIO_TRACK");
    case AVAssetError::couldNotAddMutableAudioTrack:
        return zelkKitLocalized("AVASSET_ERROR_ASSET_COULD_NOT_ADD_MUTABLE_AUDIO_TRACK");
    case AVAssetError::assetExportSessionCreationFailure:
        return zelkKitLocalized("AVASSET_ERROR_ASSET_COULD_NOT_CREATE_EXPORT_SESSION");
    case AVAssetError::couldNotAddAudioOutputReader:
        return "Could Not Add Audio Output Reader";
    case AVAssetError::unsupportedFileFormat:
        return zelkKitLocalized("AVASSET_ERROR_UNSUPPORTED_FILE_FORMAT");
    }
    return {};
}

} // namespace

platform::LocalizedError localizedError(AVAssetError error)
{
    return {.errorDescription = description(error)};
}

platform::NSError nsError(AVAssetError error)
{
    return platform::NSError("ZelkKit.AVAssetError", static_cast<long>(error));
}

} // namespace zelk
