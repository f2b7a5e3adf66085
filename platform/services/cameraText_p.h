// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// What the camera's page says, and what is asked for it.
enum class CameraText {
    photo,
    video,
    takePhoto,
    record,
    stop,
    switchCamera,
    retake,
    usePhoto,
    useVideo,
    viewfinder,
    recordingTime,
    noAccess,
    inUse,
    disconnected,
    diskFull,
    unusable,
    cameraQuestion, // "%@" is the program
    microphoneQuestion
};

// In the language of the user's that comes first of those known here; English when none is. Any thread.
const std::string& cameraText(CameraText text);

} // namespace platform
