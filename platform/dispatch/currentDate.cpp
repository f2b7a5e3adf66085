// SPDX-License-Identifier: MIT
#include "platform/dispatch/currentDate.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <chrono>

namespace platform {

namespace {

// 2023-11-14 22:13:20 UTC.
constexpr double virtualEpoch = 1'700'000'000;

} // namespace

Date currentDate()
{
    using Seconds = std::chrono::duration<double>;
    if (const auto* clock = dynamic_cast<const VirtualClock*>(&RunLoop::main().clock()))
        return {virtualEpoch + Seconds(clock->now().time_since_epoch()).count()};
    return {Seconds(std::chrono::system_clock::now().time_since_epoch()).count()};
}

} // namespace platform
