// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDevice.h"
#include "platform/foundation/Result.h"

#include <memory>

namespace platform {

// What a session takes from one device. Any thread.
class AVCaptureDeviceInput : public NSObject {
public:
    // AVError::applicationIsNotAuthorizedToUseDevice unless the user has allowed it; deviceNotConnected. Opens nothing yet.
    [[nodiscard]] static Result<std::shared_ptr<AVCaptureDeviceInput>>
    make(std::shared_ptr<AVCaptureDevice> device);

    const std::shared_ptr<AVCaptureDevice>& device() const { return device_; }

    struct Key; // only `make` makes inputs
    AVCaptureDeviceInput(const Key&, std::shared_ptr<AVCaptureDevice> device);

private:
    const std::shared_ptr<AVCaptureDevice> device_;
};

} // namespace platform
