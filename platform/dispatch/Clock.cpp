// SPDX-License-Identifier: MIT
#include "platform/dispatch/Clock.h"

namespace platform {

Clock::~Clock() = default;

Instant SystemClock::now() const
{
    return Instant(std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch()));
}

} // namespace platform
