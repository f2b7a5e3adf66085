// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/RunLoop.h"

namespace platform {

// Delays work of background queues by the clock of the main run loop, without needing the main thread to
// take turns: a thread of its own, started on first use, runs a loop for it. Under a VirtualClock the main
// run loop does it, so that the test decides when. `work` must be short. Any thread.
class DelayedWork {
public:
    static void performAt(Instant deadline, RunLoop::Work work);
    static void performAfter(Duration delay, RunLoop::Work work);

private:
    static RunLoop& loop();
    static RunLoop& startThread();
};

} // namespace platform
