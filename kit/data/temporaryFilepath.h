// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FileManager.h"

#include <optional>
#include <string_view>

namespace zelk {

// The file of that name in the manager's temporary directory, with the extension when one is given. Unique only if the
// name is. Makes no file.
platform::URL temporaryFilepathForUniqueFilename(const platform::FileManager& manager,
                                                 std::string_view filename,
                                                 std::optional<std::string_view> pathExtension = {});
// The same with a fresh UUID as the name.
platform::URL uniqueTemporaryFilepath(const platform::FileManager& manager,
                                      std::optional<std::string_view> pathExtension = {});

} // namespace zelk
