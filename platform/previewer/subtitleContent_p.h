// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// Whether the file is one that the subtitle preview is for: by its name, or by a time line near its start, since files
// are named in many ways. Reads a few kilobytes of regular files only; what cannot be read is none.
bool isSubtitleFile(const std::string& path);

} // namespace platform
