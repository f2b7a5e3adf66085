// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDevice.h"
#include "platform/avfoundation/CVPixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

// What a synthetic camera sees. One thread at a time.
class SyntheticPicture {
public:
    // Even numbers of pixels.
    SyntheticPicture(int width, int height, AVCaptureDevicePosition position);

    // Null when there is no memory.
    std::shared_ptr<CVPixelBuffer> draw(int number) const;

    static int numberOf(const std::byte* luma, std::size_t bytesPerRow, int width, int height);

private:
    const int width_, height_;
    const bool isPortrait_;
    std::vector<std::uint8_t> luma_, blue_, red_; // of what does not move
};

} // namespace platform
