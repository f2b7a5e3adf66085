// SPDX-License-Identifier: MIT
#include "platform/dispatch/RunLoopDisplayDriver_p.h"

#include "platform/dispatch/RunLoop.h"

namespace platform {

namespace {

constexpr Duration framePeriod = Duration(std::chrono::seconds(1)) / 60;

} // namespace

void RunLoopDisplayDriver::start()
{
    arm(RunLoop::main().clock().now() + framePeriod);
}

void RunLoopDisplayDriver::stop()
{
    pendingFrame_.cancel();
}

bool RunLoopDisplayDriver::isArmed() const
{
    return !pendingMark_.expired();
}

void RunLoopDisplayDriver::arm(Instant frame)
{
    auto mark = std::make_shared<const char>();
    pendingMark_ = mark;
    pendingFrame_ = RunLoop::main().schedule(frame, [this, frame, mark] { handleFrame(frame); });
}

void RunLoopDisplayDriver::handleFrame(Instant frame)
{
    const Instant now = RunLoop::main().clock().now();
    // Armed before the callbacks run, so that they may stop it.
    const Instant next = frame + framePeriod;
    arm(next > now ? next : now + framePeriod);
    DisplayLink::shared().deliverFrame(now);
}

} // namespace platform
