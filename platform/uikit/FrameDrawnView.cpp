// SPDX-License-Identifier: MIT
#include "platform/uikit/FrameDrawnView.h"

#include "platform/dispatch/RunLoop.h"

#include <utility>

namespace platform {

namespace {

double secondsOf(Instant time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

} // namespace

void FrameDrawnView::setRunning(bool isRunning)
{
    assertOnMainThread();
    if (std::exchange(isRunning_, isRunning) == isRunning)
        return;
    frames_ = {};
    setNeedsDisplay();
}

void FrameDrawnView::draw(CGContext& context, CGRect)
{
    wasPainted_ = true;
    if (isRunning_) {
        if (!frames_)
            seconds_ = secondsOf(RunLoop::main().clock().now());
        // A picture of a view that stands in no window is one moment.
        if (!frames_ && window())
            frames_ = DisplayLink::shared().request([this](Instant time) { frame(time); });
    }
    drawFrame(context, seconds_);
}

void FrameDrawnView::frame(Instant time)
{
    seconds_ = secondsOf(time);
    if (std::exchange(wasPainted_, false))
        setNeedsDisplay();
    else
        frames_ = {}; // nobody sees it
}

void FrameDrawnView::didMoveToWindow()
{
    UIView::didMoveToWindow();
    frames_ = {};
}

} // namespace platform
