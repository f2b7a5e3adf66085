// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <string>
#include <string_view>

namespace platform {

// What the name of a file begins with that is being written beside the one it will replace. A process that is killed
// leaves it behind.
inline constexpr std::string_view draftPrefix = ".zelk-";

// The error of something that could not be done to a file. `deed` completes "couldn’t be ..." and `clause` completes
// "because ...".
Error fileWriteError(NSCocoaError code, const URL& file, std::string_view deed, std::string_view clause);
// The same from an error number of the system.
Error fileWriteError(int errorNumber, const URL& file, std::string_view deed);

// The path of a file URL as the system takes it. Errors: fileWriteUnsupportedScheme, fileWriteInvalidFileName.
[[nodiscard]] Result<std::string> writablePath(const URL& url, std::string_view deed);
// But for the root.
std::string withoutSlashAtEnd(std::string path);

} // namespace platform
