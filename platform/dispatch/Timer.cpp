// SPDX-License-Identifier: MIT
#include "platform/dispatch/Timer.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr Duration shortestInterval = std::chrono::microseconds(100);

} // namespace

std::shared_ptr<Timer> Timer::scheduledTimer(Duration interval, Repeats repeats, Block block)
{
    assertOnMainThread();
    precondition(static_cast<bool>(block), "the block of a timer must be callable");
    std::shared_ptr<Timer> timer(new Timer(std::max(interval, shortestInterval), repeats, std::move(block)));
    timer->fireInstant_ = RunLoop::main().clock().now() + timer->interval_;
    timer->arm();
    return timer;
}

Timer::Timer(Duration interval, Repeats repeats, Block block)
    : interval_(interval)
    , repeats_(repeats)
    , block_(std::move(block))
{
}

bool Timer::isValid() const
{
    return isValid_;
}

Duration Timer::timeInterval() const
{
    return interval_;
}

Instant Timer::fireInstant() const
{
    return fireInstant_;
}

void Timer::arm()
{
    pending_ =
        RunLoop::main().schedule(fireInstant_, [self = shared_from_this()] { self->handleDeadline(); });
}

void Timer::handleDeadline()
{
    // Armed before the block runs, so that the block may invalidate, or run a loop of its own.
    if (repeats_ == Repeats::yes) {
        const Duration late = RunLoop::main().clock().now() - fireInstant_;
        fireInstant_ += (late / interval_ + 1) * interval_;
        arm();
    }
    fire();
}

void Timer::fire()
{
    assertOnMainThread();
    if (!isValid_ || !block_)
        return;
    auto self = shared_from_this(); // the block may let go of the last reference
    Block running = std::exchange(block_, nullptr);
    if (repeats_ == Repeats::no)
        invalidate();
    running(*this);
    if (isValid_)
        block_ = std::move(running);
}

void Timer::invalidate()
{
    assertOnMainThread();
    isValid_ = false;
    auto self = shared_from_this(); // the block or the run loop may hold the last reference
    pending_.cancel();
    block_ = nullptr;
}

} // namespace platform
