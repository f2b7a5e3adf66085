// SPDX-License-Identifier: MIT
#include "platform/swiftui/AnimatableValues.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/ScreenSight.h"
#include "platform/uikit/UIView.h"

#include <chrono>
#include <utility>

namespace platform {

AnimatableValues::AnimatableValues(std::vector<double> values, std::function<void()> handleChange)
    : AnimatableValues(std::move(values), std::move(handleChange), nullptr)
{
}

AnimatableValues::AnimatableValues(std::vector<double> values, std::function<void()> handleChange,
                                   std::function<bool()> isSeen)
    : start_(values)
    , target_(values)
    , presentation_(std::move(values))
    , handleChange_(std::move(handleChange))
    , isSeen_(std::move(isSeen))
{
}

double AnimatableValues::elapsed(Instant now) const
{
    return std::chrono::duration<double>(now - began_).count();
}

void AnimatableValues::set(std::vector<double> values)
{
    assertOnMainThread();
    if (values == target_)
        return;
    auto* timing = UIView::currentAnimation();
    if (!timing || values.size() != presentation_.size()) {
        frames_.cancel();
        changes_.cancel();
        isMoving_ = false;
        start_ = target_ = presentation_ = std::move(values);
        handleChange_();
        return;
    }
    // A movement that is interrupted hands its speed on.
    auto now = RunLoop::main().clock().now();
    std::vector<double> speed(values.size(), 0);
    if (isMoving_) {
        if (!frames_)
            moveTo(now);
        auto rest = timing_.sample(elapsed(now)).velocity;
        auto pushed = timing_.sample(elapsed(now), 1).velocity - rest;
        for (std::size_t i = 0; i < speed.size(); ++i)
            speed[i] = (target_[i] - start_[i]) * rest + speed_[i] * pushed;
    }
    start_ = presentation_;
    target_ = std::move(values);
    speed_ = std::move(speed);
    timing_ = *timing;
    began_ = now;
    isMoving_ = true;
    requestFrames();
}

void AnimatableValues::requestFrames()
{
    isDrawn_ = true; // what comes next is seen at least once
    changes_.cancel();
    if (!frames_)
        frames_ = DisplayLink::shared().request([this](Instant frameTime) { step(frameTime); });
}

const std::vector<double>& AnimatableValues::drawn()
{
    isDrawn_ = true;
    if (isMoving_ && !frames_) {
        moveTo(RunLoop::main().clock().now());
        if (isMoving_)
            requestFrames();
    }
    return presentation_;
}

void AnimatableValues::step(Instant frameTime)
{
    if (isSeen_ ? !isSeen_() : !std::exchange(isDrawn_, false)) {
        frames_.cancel();
        if (isSeen_)
            changes_ = whenScreenChanges([this] { showAgain(); });
        return;
    }
    moveTo(frameTime);
    if (!isMoving_)
        frames_.cancel();
    handleChange_();
}

void AnimatableValues::showAgain()
{
    moveTo(RunLoop::main().clock().now());
    if (isMoving_)
        requestFrames();
    handleChange_();
}

void AnimatableValues::moveTo(Instant time)
{
    auto rest = timing_.sample(elapsed(time));
    auto pushed = timing_.sample(elapsed(time), 1);
    // A spring is linear in its first speed: what a unit of it adds is the same for each number.
    for (std::size_t i = 0; i < presentation_.size(); ++i)
        presentation_[i] = start_[i] + (target_[i] - start_[i]) * rest.progress
            + speed_[i] * (pushed.progress - rest.progress);
    if (rest.isFinished && pushed.isFinished) {
        // A movement that ends where it began, by cycles that run backwards, jumps to what was set, as on the platform.
        presentation_ = target_;
        isMoving_ = false;
    }
}

} // namespace platform
