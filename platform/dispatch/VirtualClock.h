// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"

#include <atomic>

namespace platform {

// Time that stands still until it is told to advance. While it lives it is the clock of RunLoop::main():
// a test of a 31-second delay takes microseconds.
//
//     VirtualClock clock;
//     showBanner();
//     clock.advance(31s);     // runs everything due on the way, at its own time
//
// It starts at the same instant in every run. Work that waits when it comes keeps its remaining delay, and
// what is left of that work gets it back when it goes; what was given while it lived is dropped then,
// without running. Instants noted under one clock mean nothing under the other.
// Main thread only, one at a time; now() is for any thread.
class VirtualClock final : public Clock {
public:
    VirtualClock();
    VirtualClock(const VirtualClock&) = delete; // the run loop holds its address
    VirtualClock& operator=(const VirtualClock&) = delete;
    ~VirtualClock() override;

    Instant now() const override;

    // Steps from deadline to deadline up to `duration` from now, settling at each. May be called
    // from work that runs. Requires: not negative.
    void advance(Duration duration);

    // Lets time pass without running anything, as when the main thread is busy. Requires: not negative.
    void elapse(Duration duration);

    // Takes turns of the run loop until nothing is due at the present time. Aborts when the work never
    // ends giving new work for the same instant.
    void settle();

    // Settles, and waits (in real time) until the background queues have nothing to run either, taking
    // turns meanwhile. Never returns while work there waits for the caller.
    void settleWithBackgroundQueues();

private:
    std::atomic<Instant> now_;
};

} // namespace platform
