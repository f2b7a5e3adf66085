// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/DisplayLink.h"

#include <memory>

namespace platform {

// Makes 60 frames a second by the clock of the main run loop. Frames missed while the main thread was busy
// are not made up for. Main thread only.
class RunLoopDisplayDriver final : public DisplayLinkDriver {
public:
    void start() override;
    void stop() override;

    // False also when a VirtualClock took the waiting frame away with it.
    bool isArmed() const;

private:
    void arm(Instant frame);
    void handleFrame(Instant frame);

    // main thread only
    Token pendingFrame_;
    std::weak_ptr<const void> pendingMark_; // lives in the work that waits
};

} // namespace platform
