// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// How many UTF-16 units a well-formed piece of UTF-8 takes.
std::int64_t utf16Count(std::string_view utf8);

} // namespace platform
