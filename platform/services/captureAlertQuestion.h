// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureAuthorization.h"

namespace platform {

// Asks in front of the window that has the keyboard, with the reason that the program's manifest gives under
// NSCameraUsageDescription or NSMicrophoneUsageDescription. A program without such a window cannot ask.
class AVCaptureAlertQuestion : public AVCaptureQuestion {
public:
    void ask(AVMediaType mediaType, Answer answer) override;
};

// Lets AVCaptureDevice::requestAccess ask in that way, unless somebody else asks already. Pickers do so by themselves. Main
// thread only.
void useCaptureAlertQuestion();

} // namespace platform
