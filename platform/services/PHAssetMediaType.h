// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The numbers are the platform's.
enum class PHAssetMediaType : long {
    image = 1,
    video = 2,
};

} // namespace platform
