// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextDecoding.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

// How much room transcodeToUTF8 needs at most.
std::size_t transcodedCapacity(TextEncoding encoding, std::size_t size);

// Writes UTF-16 or UTF-32 as UTF-8 and gives how many bytes; nothing when a unit is not a character or is cut
// off. Requires: transcodedCapacity() bytes at `output`; not for TextEncoding::utf8.
std::optional<std::size_t> transcodeToUTF8(TextEncoding encoding, std::string_view bytes, char* output);

} // namespace platform
