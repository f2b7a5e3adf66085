// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Whether all bytes are UTF-8 as the standard has it: shortest forms, no surrogates, nothing above U+10FFFF,
// nothing cut off. Faster than memory: 100 GB/s of ASCII in the cache, 17 GB/s of the rest. Any thread.
bool isWellFormedUTF8(std::string_view bytes);

// `bytes` with U+FFFD for each maximal part that is not well-formed; for messages, never for contents.
std::string repairedUTF8(std::string_view bytes);

} // namespace platform
