// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Logger.h"

namespace zelk {

// The kit's own log: category "main" of the subsystem of the application's prefix and ".zelkKit". Any thread.
const platform::Logger& kitLogger();

} // namespace zelk
