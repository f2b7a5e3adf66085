// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"

#include <string_view>

namespace platform {

inline constexpr std::string_view AVFoundationErrorDomain = "AVFoundationErrorDomain";

// Codes of AVFoundationErrorDomain that media work here can meet. The numbers are the platform's.
enum class AVError : long {
    unknown = -11800,
    outOfMemory = -11801,
    sessionNotRunning = -11803,
    noDataCaptured = -11805,
    diskFull = -11807,
    deviceWasDisconnected = -11808,
    maximumDurationReached = -11810,
    deviceNotConnected = -11814,
    deviceInUseByAnotherApplication = -11815,
    mediaServicesWereReset = -11819,
    exportFailed = -11820,
    decodeFailed = -11821,
    invalidSourceMedia = -11822,
    fileAlreadyExists = -11823,
    compositionTrackSegmentsNotContiguous = -11824,
    invalidCompositionTrackSegmentDuration = -11825,
    invalidCompositionTrackSegmentSourceStartTime = -11826,
    invalidCompositionTrackSegmentSourceDuration = -11827,
    fileFormatNotRecognized = -11828,
    fileFailedToParse = -11829,
    maximumStillImageCaptureRequestsExceeded = -11830,
    contentIsProtected = -11831,
    noImageAtTime = -11832,
    decoderNotFound = -11833,
    encoderNotFound = -11834,
    contentIsNotAuthorized = -11835,
    operationNotSupportedForAsset = -11838,
    decoderTemporarilyUnavailable = -11839,
    encoderTemporarilyUnavailable = -11840,
    invalidVideoComposition = -11841,
    operationInterrupted = -11847,
    applicationIsNotAuthorizedToUseDevice = -11852,
    noLongerPlayable = -11867,
    noSourceTrack = -11872,
    operationCancelled = -11878,
};

// In the texts of the error that ended a recording: "true" when the file holds all until then all the same.
inline constexpr std::string_view AVErrorRecordingSuccessfullyFinishedKey =
    "AVErrorRecordingSuccessfullyFinishedKey";

// The error of that code, which is what `failure(AVError::diskFull)` and an Error made from one hold. Without a
// description in `userInfo` it is described by a sentence for people that names the kind of fault; texts of `userInfo`
// win. Any thread.
NSError nsError(AVError code, NSError::UserInfo userInfo = {});

} // namespace platform
