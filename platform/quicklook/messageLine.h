// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Writes `message` on standard error as one line that is safe on any terminal: a file's name may hold anything, so
// control characters, line separators and direction overrides show as question marks, and what is not UTF-8 as U+FFFD.
void printMessageLine(std::string_view message);

std::string messageLine(std::string_view message);

} // namespace platform
