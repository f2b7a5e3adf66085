// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"

#include <functional>
#include <memory>

namespace platform {

// Calls a block on the main run loop after an interval, once or again and again. The run loop keeps it
// alive while it is valid. Main thread only.
class Timer : public std::enable_shared_from_this<Timer> {
public:
    enum class Repeats { no, yes };
    using Block = std::function<void(Timer&)>;

    // Starts at once: the first call comes one interval from now. An interval under 0.1 ms counts as
    // 0.1 ms. Calls stay on the grid of the first; those that were missed because the main thread was
    // busy are made up for by a single one.
    static std::shared_ptr<Timer> scheduledTimer(Duration interval, Repeats repeats, Block block);

    Timer(const Timer&) = delete; // the run loop refers to it
    Timer& operator=(const Timer&) = delete;

    // False once it was invalidated or, without repeats, has fired.
    bool isValid() const;
    Duration timeInterval() const;
    // The instant of the next call. Meaningless when it is not valid.
    Instant fireInstant() const;

    // Calls the block now, besides the calls on the grid; without repeats it is the only call. Does
    // nothing when the timer is not valid or the block is running.
    void fire();

    // No more calls; the block is released, after it returns if it is running. May be called from the
    // block, and again.
    void invalidate();

private:
    Timer(Duration interval, Repeats repeats, Block block);
    void arm();
    void handleDeadline();

    // fixed after construction
    const Duration interval_;
    const Repeats repeats_;
    // main thread only
    Block block_;
    Instant fireInstant_;
    Token pending_;
    bool isValid_ = true;
};

} // namespace platform
