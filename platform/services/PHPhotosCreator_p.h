// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// Which program added a photo or video, kept beside its bytes as an extended attribute. Where the file system has none,
// nobody knows afterwards.

void markAsAddedByThisProgram(int descriptor);
bool wasAddedByThisProgram(const std::string& path);

} // namespace platform
