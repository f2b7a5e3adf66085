// SPDX-License-Identifier: MIT
#include "platform/dispatch/DelayedWork_p.h"

#include <future>
#include <thread>
#include <utility>

namespace platform {

void DelayedWork::performAt(Instant deadline, RunLoop::Work work)
{
    loop().performAt(deadline, std::move(work));
}

void DelayedWork::performAfter(Duration delay, RunLoop::Work work)
{
    loop().performAfter(delay, std::move(work));
}

RunLoop& DelayedWork::loop()
{
    if (RunLoop::isMainClockVirtual())
        return RunLoop::main();
    static RunLoop& loop = startThread();
    return loop;
}

RunLoop& DelayedWork::startThread()
{
    std::promise<RunLoop*> started;
    auto loop = started.get_future();
    std::thread([started = std::move(started)]() mutable {
        // Never destroyed: the thread runs until the process ends.
        auto& own = *new RunLoop;
        started.set_value(&own);
        own.run();
    }).detach();
    return *loop.get();
}

} // namespace platform
