// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/graphics/UIImage.h"

#include <memory>

namespace platform {

// The picture for drawing, its pixels shared and not copied when it is BGRA32, which counts as opaque. Empty when there is no
// memory. Any thread.
UIImage imageFromPixelBuffer(const std::shared_ptr<const CVPixelBuffer>& picture);

} // namespace platform
