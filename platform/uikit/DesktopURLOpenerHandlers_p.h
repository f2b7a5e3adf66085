// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The value of an environment variable; `otherwise` where it is unset or empty.
std::string environmentVariable(const char* name, std::string_view otherwise = {});
// The parts of a list that are not empty.
std::vector<std::string> splitList(std::string_view list, char separator);

// Whether the desktop has a program for a kind of content ("x-scheme-handler/mailto"), as its lists of associations say:
// one whose desktop entry is there and not hidden, and whose executable is installed. What the user has taken away counts
// as that.
bool desktopHasHandler(std::string_view mimeType);

} // namespace platform
