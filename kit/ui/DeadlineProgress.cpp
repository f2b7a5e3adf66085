// SPDX-License-Identifier: MIT
#include "kit/ui/DeadlineProgress.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/currentDate.h"
#include "platform/uikit/ScreenSight.h"
#include "platform/uikit/UIProgressView.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace zelk {

namespace {

// Often enough that no step is seen on a bar a few hundred pixels long, and never more often than a screen shows.
constexpr double stepsToFull = 400, shortestStep = 1.0 / 60, longestStep = 1; // seconds
// A date is a double, and rounds.
constexpr double nearEnough = 0.0005;

} // namespace

DeadlineProgress::DeadlineProgress(const std::shared_ptr<platform::UIProgressView>& bar)
    : bar_(bar)
{
}

double DeadlineProgress::progressNow() const
{
    auto whole = deadline_.timeIntervalSince1970 - start_.timeIntervalSince1970;
    auto passed = platform::currentDate().timeIntervalSince1970 - start_.timeIntervalSince1970;
    if (whole - passed < nearEnough)
        return 1;
    return startProgress_ + (1 - startProgress_) * std::max(passed / whole, 0.0);
}

void DeadlineProgress::setDeadline(platform::Date deadline)
{
    platform::assertOnMainThread();
    auto bar = bar_.lock();
    if (!bar || std::isnan(deadline.timeIntervalSince1970))
        return;
    auto present = next_ ? progressNow() : bar->progress();
    startProgress_ = present < 1 ? present : 0;
    start_ = platform::currentDate();
    deadline_ = deadline;
    step();
}

void DeadlineProgress::step()
{
    auto bar = bar_.lock();
    if (!bar)
        return;
    auto progress = progressNow();
    bar->setProgress(progress);
    auto whole = deadline_.timeIntervalSince1970 - start_.timeIntervalSince1970;
    if (progress >= 1 || !std::isfinite(whole)) {
        next_.cancel();
        return;
    }
    auto left = deadline_.timeIntervalSince1970 - platform::currentDate().timeIntervalSince1970;
    auto wait = std::clamp(whole / stepsToFull, shortestStep, longestStep);
    auto delay = std::chrono::ceil<platform::Duration>(std::chrono::duration<double>(std::min(wait, left)));
    auto& loop = platform::RunLoop::main();
    if (!platform::isInSight(*bar)) {
        next_ = platform::whenScreenChanges([weak = weak_from_this()] {
            if (auto self = weak.lock())
                self->next_ = platform::RunLoop::main().schedule({}, [weak] {
                    if (auto again = weak.lock())
                        again->step();
                });
        });
        return;
    }
    next_ = loop.schedule(loop.clock().now() + delay, [weak = weak_from_this()] {
        if (auto self = weak.lock())
            self->step();
    });
}

} // namespace zelk
