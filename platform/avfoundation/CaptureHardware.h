// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDevice.h"
#include "platform/avfoundation/CMSampleBuffer.h"
#include "platform/dispatch/Token.h"
#include "platform/foundation/Result.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

// The seam between capture sessions and what stands on the desk: the machine's own cameras and microphone, or synthetic ones
// (SyntheticCapture.h).

struct CaptureDeviceInfo {
    std::string uniqueID;
    std::string name;
    AVMediaType mediaType = AVMediaType::video;
    AVCaptureDevicePosition position = AVCaptureDevicePosition::unspecified;
    bool operator==(const CaptureDeviceInfo&) const = default;
};

// What would be best; a device gives what comes nearest.
struct CaptureWish {
    int width = 1280; // pixels
    int height = 720;
    double frameRate = 30; // pictures a second
    bool operator==(const CaptureWish&) const = default;
};

// What a device gives while it is open. One thread at a time.
class CaptureStream {
public:
    virtual ~CaptureStream() = default;
    // The next picture (planar420YpCbCr8) or stretch of linear PCM, its times those of one clock for all devices. Waits for it;
    // nothing when it is told to stop meanwhile. An error is the stream's end: AVError::deviceWasDisconnected, ...
    [[nodiscard]] virtual Result<std::optional<CMSampleBuffer>> read(const std::stop_token& stop) = 0;
};

class CaptureHardware {
public:
    virtual ~CaptureHardware() = default;
    // Any thread.
    virtual std::vector<CaptureDeviceInfo> devices(AVMediaType mediaType) = 0;
    // May take a second. AVError::deviceNotConnected, deviceInUseByAnotherApplication, applicationIsNotAuthorizedToUseDevice
    // (the system refuses), fileFormatNotRecognized or decoderNotFound (what it gives nobody here understands). Any thread.
    [[nodiscard]] virtual Result<std::unique_ptr<CaptureStream>>
    open(const CaptureDeviceInfo& device, const CaptureWish& wish, const std::stop_token& stop) = 0;
    // `onChange` is called on any thread until the token goes, and not while it goes.
    [[nodiscard]] virtual Token watch(std::function<void()> onChange) = 0;

    // The machine's own, unless ZELK_CAPTURE in the environment says "synthetic" or "none" when it is first asked for, or
    // something else was put in its place. Any thread.
    static std::shared_ptr<CaptureHardware> current();
    // Null: as at first. Open streams go on. Any thread.
    static void replace(std::shared_ptr<CaptureHardware> hardware);
};

} // namespace platform
