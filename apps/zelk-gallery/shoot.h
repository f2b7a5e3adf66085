// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <optional>
#include <string>

namespace gallery {

struct ShootOptions {
    std::string folder;              // made when it is not there
    std::optional<std::string> page; // none: all, and the whole window as "gallery"
    double scale = 1;
};

// Paints pages without a display, each a moment after it has appeared, and says each file on standard output. Stops at
// the first file that cannot be written.
[[nodiscard]] platform::Result<void> shoot(const ShootOptions& options);

} // namespace gallery
