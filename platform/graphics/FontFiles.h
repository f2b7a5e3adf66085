// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Makes the fonts of a file known to this process, beside those that are installed. False when the file has none. Starts
// graphics off-screen when nothing has. Main thread only.
bool addFontFile(std::string_view path);

} // namespace platform
