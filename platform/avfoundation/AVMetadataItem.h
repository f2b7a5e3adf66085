// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace platform {

// Metadata that means the same whatever the file calls it.
enum class AVMetadataKey {
    title,
    creationDate,
    artist,
    albumName,
    author,
    copyrights,
    description,
    location,
    make,
    model,
    software,
    type,
};

// One fact that a file tells about itself.
struct AVMetadataItem {
    // Absent when the key is none of those.
    std::optional<AVMetadataKey> commonKey;
    // As the container names it.
    std::string key;
    // UTF-8; bytes that are not are replaced.
    std::string value;
    bool operator==(const AVMetadataItem&) const = default;
};

} // namespace platform
