// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/FileManager.h"

#include <cstdint>

namespace zelk {

// Free bytes on the volume that holds the documents directory; 0 when the system does not say. Errors: the system's own,
// when that directory does not exist for one. Requires: the user has one.
[[nodiscard]] platform::Result<std::uint64_t> computeFreeDiskSpace(const platform::FileManager& manager);

} // namespace zelk
