// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureSession.h"
#include "platform/avfoundation/CaptureHardware.h"

namespace platform {

// What a session of that preset asks its devices for.
CaptureWish captureWish(AVCaptureSessionPreset preset);

} // namespace platform
