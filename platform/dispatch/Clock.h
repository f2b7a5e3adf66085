// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace platform {

using Duration = std::chrono::nanoseconds;

// The time line that instants lie on: it never jumps and says nothing about the date. It has no `now()`
// of its own on purpose: only a Clock tells the time.
struct MonotonicTime {
    using duration = Duration;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<MonotonicTime, Duration>;
    static constexpr bool is_steady = true;
};
using Instant = MonotonicTime::time_point;

// Tells the time. Whatever depends on time asks the clock of its run loop (`RunLoop::main().clock()`), so
// that a test can put a VirtualClock in its place.
class Clock {
public:
    virtual ~Clock();

    // Never earlier than an earlier answer. Any thread.
    virtual Instant now() const = 0;
};

// The machine's steady clock.
class SystemClock final : public Clock {
public:
    Instant now() const override;
};

} // namespace platform
