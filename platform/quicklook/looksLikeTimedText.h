// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Whether a text has the line of times that begins a cue, " --> " between digits, in its beginning. The names and types that
// files go by are no evidence: they are given by suffix.
bool looksLikeTimedText(std::string_view head);

} // namespace platform
