// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/graphics/UIImage.h"

#include <cstddef>
#include <span>

namespace platform {

// The largest picture of an icon file (.icns) that is kept as PNG, which those of 128 pixels and more are. Any thread.
// Errors: NSCocoaErrorDomain, fileReadCorruptFile when the file is none, is cut off or has no such picture; those of
// UIImage::fromData.
[[nodiscard]] Result<UIImage> iconFromData(std::span<const std::byte> data);
// Also the file-read codes.
[[nodiscard]] Result<UIImage> iconFromFile(const URL& file);

} // namespace platform
