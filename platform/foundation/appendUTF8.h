// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// Gives false, and appends nothing, when `scalar` is no Unicode scalar value. Any thread.
bool appendUTF8(std::string& text, char32_t scalar);

} // namespace platform
