// SPDX-License-Identifier: MIT
#include "platform/uikit/RunLoopPump_p.h"

#include "platform/dispatch/RunLoop.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <algorithm>
#include <chrono>
#include <limits>

namespace platform {

RunLoopPump::RunLoopPump()
{
    RunLoop::main().setWakeUp([this] { wakeUp(); });
    wakeUp(); // for what was given before
}

RunLoopPump::~RunLoopPump()
{
    RunLoop::main().setWakeUp(nullptr);
}

void RunLoopPump::wakeUp()
{
    if (!isPosted_.exchange(true))
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool RunLoopPump::event(QEvent* event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    takeTurn();
    return true;
}

void RunLoopPump::timerEvent(QTimerEvent*)
{
    takeTurn();
}

void RunLoopPump::takeTurn()
{
    using namespace std::chrono;
    isPosted_ = false;
    timer_.stop();
    auto& loop = RunLoop::main();
    loop.runPending();
    auto deadline = loop.nextDeadline();
    if (!deadline)
        return;
    auto now = loop.clock().now();
    if (*deadline <= now) {
        // Posted, so that what the person does comes in between.
        wakeUp();
        return;
    }
    // Rounded up: a timer that fires too early takes a turn for nothing. Longer than the timer can count, it is set anew.
    auto wait =
        std::min<std::int64_t>(ceil<milliseconds>(*deadline - now).count(), std::numeric_limits<int>::max());
    timer_.start(static_cast<int>(wait), Qt::PreciseTimer, this);
}

} // namespace platform
