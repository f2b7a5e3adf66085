// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"

namespace platform {

// What the calendar's clock says now; unlike an Instant it may jump, and goes on while the machine sleeps. Under a
// VirtualClock a fixed date that moves with that clock. Any thread.
Date currentDate();

} // namespace platform
