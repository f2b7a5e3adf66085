// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CaptureHardware.h"

#include <memory>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace platform {

// A device that the codec library's device part reads: "v4l2", "pulse", "alsa".
struct FFmpegCaptureInput {
    std::string format;
    std::string device;
    std::vector<std::pair<std::string, std::string>> options;
    AVMediaType mediaType = AVMediaType::video;
};

// Whether that part is there and knows the format. Loads it when first asked, which brings many libraries with it: programs
// that capture nothing do without. Any thread.
bool canCaptureWith(const std::string& format);

Result<std::unique_ptr<CaptureStream>> openFFmpegCapture(const FFmpegCaptureInput& input,
                                                         const std::stop_token& stop);

} // namespace platform
