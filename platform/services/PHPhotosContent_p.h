// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/PHAssetMediaType.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// What a file holds, told from its bytes alone.
struct PHPhotosContent {
    PHAssetMediaType type;
    std::string pathExtension; // the usual one
};

// Nothing when the file at `path` is neither a photo nor a video, or is cut off. Any thread.
std::optional<PHPhotosContent> photosContentOf(const std::string& path);

// Whether files of such content are often named so.
bool isUsualExtension(std::string_view pathExtension, PHAssetMediaType type);

} // namespace platform
