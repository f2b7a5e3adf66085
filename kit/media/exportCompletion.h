// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <functional>

namespace zelk {

// Gets the file that was written, or why there is none; once. On the export queue or a thread of the platform's.
using ExportCompletion = std::function<void(platform::Result<platform::URL>)>;

} // namespace zelk
