// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// Texts that a file system keeps beside a file's contents. Keys are the system's and are passed as they are: those that
// programs may choose begin with "user." here. Symbolic links are followed. Failures to write are errors of
// NSPOSIXErrorDomain with the system's error number and no user info; ENOTSUP: the file system keeps none, or the key has
// no such prefix. A path or key with a zero byte names nothing: EINVAL. Any thread.

// Nothing when there is no such file or attribute, when it may not be read, and when it is not UTF-8.
std::optional<std::string> getXAttr(const platform::FileManager& manager, std::string_view filePath,
                                    std::string_view key);
// Makes or replaces it. Takes the bytes as they are, without a zero at the end.
[[nodiscard]] platform::Result<void> setXAttr(const platform::FileManager& manager, std::string_view filePath,
                                              std::string_view key, std::string_view value);
// One that is missing is an error (ENODATA).
[[nodiscard]] platform::Result<void> removeXattr(const platform::FileManager& manager,
                                                 std::string_view filePath, std::string_view key);

} // namespace zelk
