// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <optional>

namespace zelk {

// Whether the running program is a build handed out for testing, as its receipt tells. Computed once. Any thread.
bool isTestFlight();
// The same of any receipt; a program without one is none.
bool isTestFlightReceipt(const std::optional<platform::URL>& receipt);

} // namespace zelk
