// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CaptureHardware.h"
#include "platform/avfoundation/V4L2Camera_p.h"

#include <mutex>

namespace platform {

// The machine's own: the kernel's video devices, and the sound system's default source.
class DesktopCapture : public CaptureHardware {
public:
    std::vector<CaptureDeviceInfo> devices(AVMediaType mediaType) override;
    Result<std::unique_ptr<CaptureStream>> open(const CaptureDeviceInfo& device, const CaptureWish& wish,
                                                const std::stop_token& stop) override;
    Token watch(std::function<void()> onChange) override;

private:
    std::vector<V4L2Camera> cameras();

    std::mutex mutex_;
    V4L2Cameras cameras_; // guarded by mutex_
};

// Calls `onChange` on a thread of its own when a file whose name begins with "video" comes, goes or changes its owner in
// `folder`. A folder that cannot be watched never changes.
[[nodiscard]] Token watchDevices(const std::string& folder, std::function<void()> onChange);

} // namespace platform
