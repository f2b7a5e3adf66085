// SPDX-License-Identifier: MIT
// What is taken over from a photograph into what is cut out of it.
#include "platform/services/JPEGMetadata_p.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto metadata = platform::metadataOfCut(bytes, 100, 100);
    if (metadata.exif.size() + metadata.profile.size() > size)
        std::abort(); // nothing is made up
    platform::withMetadata(std::string(bytes), metadata);
    return 0;
}
