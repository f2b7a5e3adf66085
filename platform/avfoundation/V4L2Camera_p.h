// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDevice.h"
#include "platform/avfoundation/CaptureFormat_p.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A device file that gives pictures.
struct V4L2Camera {
    std::string path;
    std::string name; // for people
    std::string bus;  // where it is plugged in
    AVCaptureDevicePosition position = AVCaptureDevicePosition::unspecified;
};

// Nothing unless `path` is a device file of the kernel's video devices that captures pictures and streams them: no converter,
// no receiver of metadata, no tuner for radio; nor a directory, a pipe, an ordinary file. Never waits. Any thread.
std::optional<V4L2Camera> v4l2CameraAt(const std::string& path);

// The same, and whether it would be said again whatever happens to the device but for another state of its file.
struct V4L2Answer {
    std::optional<V4L2Camera> camera;
    bool isLasting = false;
};
V4L2Answer askV4L2(const std::string& path);

// Those of a folder of devices, by number. A device is asked only once while its file stays the same, for asking wakes it; one
// that cannot be asked, or may yet become a camera, is asked again.
// One thread at a time.
class V4L2Cameras {
public:
    using Question = std::function<V4L2Answer(const std::string& path)>;
    explicit V4L2Cameras(std::string folder = "/dev", Question question = askV4L2);
    std::vector<V4L2Camera> now();

private:
    struct Known {
        std::uint64_t device = 0;
        std::int64_t changed = 0; // nanoseconds
        std::optional<V4L2Camera> camera;
    };
    const std::string folder_;
    const Question question_;
    std::map<std::string, Known> known_;
};

// What it offers of what is understood here; empty where it does not say.
std::vector<CaptureFormat> v4l2Formats(const std::string& path);

// By what people and machines say of it: "front" and "back" of the firmware's own word for the panel it sits in, else what its
// name tells.
AVCaptureDevicePosition cameraPosition(std::string_view name, std::string_view panel);

} // namespace platform
