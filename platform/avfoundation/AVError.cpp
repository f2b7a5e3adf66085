// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVError.h"

#include <string>
#include <utility>

namespace platform {

namespace {

std::string_view description(AVError code)
{
    switch (code) {
    case AVError::unknown:
        break;
    case AVError::outOfMemory:
        return "There is not enough memory to work on this media.";
    case AVError::sessionNotRunning:
        return "The media session is not running.";
    case AVError::noDataCaptured:
        return "Nothing was recorded.";
    case AVError::deviceWasDisconnected:
        return "The device was disconnected.";
    case AVError::maximumDurationReached:
        return "The recording reached its longest duration.";
    case AVError::deviceNotConnected:
        return "The device is not connected.";
    case AVError::deviceInUseByAnotherApplication:
        return "The device is in use by another program.";
    case AVError::applicationIsNotAuthorizedToUseDevice:
        return "The program is not allowed to use the device.";
    case AVError::diskFull:
        return "There is not enough space on the disk to write the media.";
    case AVError::mediaServicesWereReset:
        return "Media services were restarted.";
    case AVError::exportFailed:
        return "The media could not be exported.";
    case AVError::decodeFailed:
        return "The media could not be decoded.";
    case AVError::invalidSourceMedia:
        return "The media is damaged or is not what it claims to be.";
    case AVError::fileAlreadyExists:
        return "A file of that name already exists.";
    case AVError::compositionTrackSegmentsNotContiguous:
    case AVError::invalidCompositionTrackSegmentDuration:
    case AVError::invalidCompositionTrackSegmentSourceStartTime:
    case AVError::invalidCompositionTrackSegmentSourceDuration:
        return "The pieces of the composition do not fit together.";
    case AVError::fileFormatNotRecognized:
        return "This media format is not supported.";
    case AVError::fileFailedToParse:
        return "The media file is damaged.";
    case AVError::maximumStillImageCaptureRequestsExceeded:
        return "Too many pictures were asked for at once.";
    case AVError::contentIsProtected:
        return "The media is protected.";
    case AVError::noImageAtTime:
        return "There is no picture at this time.";
    case AVError::decoderNotFound:
        return "There is no decoder for this media.";
    case AVError::encoderNotFound:
        return "There is no encoder for this kind of media.";
    case AVError::contentIsNotAuthorized:
        return "You are not authorized to open this media.";
    case AVError::operationNotSupportedForAsset:
        return "This cannot be done with this media.";
    case AVError::decoderTemporarilyUnavailable:
        return "The decoder is in use by something else.";
    case AVError::encoderTemporarilyUnavailable:
        return "The encoder is in use by something else.";
    case AVError::invalidVideoComposition:
        return "The video composition is not valid.";
    case AVError::operationInterrupted:
        return "The work on the media was interrupted.";
    case AVError::noLongerPlayable:
        return "The media can no longer be played.";
    case AVError::noSourceTrack:
        return "The media has no track to read from.";
    case AVError::operationCancelled:
        return "The work on the media was cancelled.";
    }
    return "The work on the media could not be completed.";
}

} // namespace

NSError nsError(AVError code, NSError::UserInfo userInfo)
{
    userInfo.emplace(NSLocalizedDescriptionKey, description(code));
    return NSError(AVFoundationErrorDomain, static_cast<long>(code), std::move(userInfo));
}

} // namespace platform
