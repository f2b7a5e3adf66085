// SPDX-License-Identifier: MIT
#include "platform/dispatch/VirtualClock.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/ThreadPool_p.h"
#include "platform/foundation/Precondition.h"

namespace platform {

namespace {

// Not zero, so that a forgotten default instant does not pass for the present.
constexpr Instant start{std::chrono::hours(1)};
constexpr int turnsLimit = 100'000;

} // namespace

VirtualClock::VirtualClock()
    : now_(start)
{
    RunLoop::main().setVirtualClock(*this);
}

VirtualClock::~VirtualClock()
{
    RunLoop::main().removeVirtualClock();
}

Instant VirtualClock::now() const
{
    return now_;
}

void VirtualClock::advance(Duration duration)
{
    precondition(duration >= Duration::zero(), "time does not run backwards");
    const Instant target = now() + duration;
    settle();
    for (auto next = RunLoop::main().nextDeadline(); next && *next <= target;
         next = RunLoop::main().nextDeadline()) {
        now_ = *next;
        settle();
    }
    // Work may have advanced the clock beyond the target itself.
    if (now() < target) {
        now_ = target;
        settle();
    }
}

void VirtualClock::elapse(Duration duration)
{
    precondition(duration >= Duration::zero(), "time does not run backwards");
    now_ = now() + duration;
}

void VirtualClock::settle()
{
    auto& loop = RunLoop::main();
    for (int turns = 0; turns < turnsLimit; ++turns) {
        loop.runPending();
        auto next = loop.nextDeadline();
        if (!next || *next > now())
            return;
    }
    preconditionFailure("work keeps giving new work for the same instant");
}

void VirtualClock::settleWithBackgroundQueues()
{
    auto& loop = RunLoop::main();
    auto& pool = ThreadPool::shared();
    pool.setOnIdle([&loop] { loop.wakeSleeper(); });
    for (;;) {
        settle();
        // Asked in this order: what an idle pool has given to the main thread is there to be seen.
        const bool isIdle = pool.isIdle();
        auto next = loop.nextDeadline();
        if (next && *next <= now())
            continue;
        if (isIdle)
            break;
        loop.sleep([&pool] { return pool.isIdle(); });
    }
    pool.setOnIdle(nullptr);
}

} // namespace platform
