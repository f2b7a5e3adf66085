// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextEncoding.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

// The characters of the bytes 0x80 to 0xFF in an encoding of one byte a character; 0 where it has none. Control
// characters count as none: no text has them, and telling encodings apart hangs on it. Null for other encodings.
// Made at first use. Any thread.
using UpperHalf = std::array<char16_t, 128>;
const UpperHalf* upperHalf(TextEncoding encoding);

// How much room decodeLegacy needs at most.
inline std::size_t legacyCapacity(std::size_t size)
{
    return size * 3;
}

// Writes the text as UTF-8 and gives how many bytes; nothing when some byte has no meaning in the encoding, or a
// character is cut off. Requires: legacyCapacity() bytes at `output`, and an encoding that is not Unicode.
std::optional<std::size_t> decodeLegacy(TextEncoding encoding, std::string_view bytes, char* output);

// Whether decodeLegacy would succeed. `isCut`: the last character may be incomplete.
enum class Ending { whole, mayBeCut };
bool decodesStrictly(TextEncoding encoding, std::string_view bytes, Ending ending = Ending::whole);

} // namespace platform
