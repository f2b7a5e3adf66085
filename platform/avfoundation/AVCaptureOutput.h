// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/NSObject.h"

#include <optional>

namespace platform {

// Where what a session's devices give goes. Belongs to one session.
class AVCaptureOutput : public NSObject {
protected:
    friend class AVCaptureSession;
    // A picture or a stretch of sound; times only go up. On the device's thread of the session, which waits for it: what the
    // device gives meanwhile is lost once its own memory is full.
    virtual void take(AVMediaType mediaType, const CMSampleBuffer& sample) = 0;
    // A device is about to be opened. On the device's thread, as all of these; one device of a kind at a time.
    virtual void handleBegin(AVMediaType) { }
    // No more comes from the device: with why, or because the session stopped it. On the device's thread.
    virtual void handleEnd(AVMediaType, const std::optional<Error>&) { }
};

} // namespace platform
