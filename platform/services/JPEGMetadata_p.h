// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// What a JPEG file says of its picture, as segments of another one.
struct JPEGMetadata {
    std::string exif;    // empty: none
    std::string profile; // of its colours, which are red, green and blue; empty: none
};

// What is still true of an upright picture of so many pixels that was cut out of the one in `original`, of which the beginning
// is enough. The small copy of the whole is left out. What cannot be understood is left out too.
JPEGMetadata metadataOfCut(std::string_view original, int width, int height);

// A JPEG file without such segments, and with them.
std::string withMetadata(std::string jpeg, const JPEGMetadata& metadata);

} // namespace platform
