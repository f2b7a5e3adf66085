// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPinchGestureRecognizer.h"

#include <cmath>

namespace platform {

namespace {

constexpr double beginDistance = 8; // points that the fingers have come apart or together

} // namespace

double UIPinchGestureRecognizer::distance() const
{
    auto a = touches_[0]->windowLocation, b = touches_[1]->windowLocation;
    return std::max(std::hypot(a.x - b.x, a.y - b.y), 1.0);
}

void UIPinchGestureRecognizer::setScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return;
    scale_ = scale;
    if (touches_.size() >= 2)
        startDistance_ = distance() / scale;
}

void UIPinchGestureRecognizer::touchBegan(UITouch& touch)
{
    UIGestureRecognizer::touchBegan(touch);
    if (touches_.size() == 2) {
        startDistance_ = distance() / scale_;
        lastTime_ = touch.timestamp;
    }
}

void UIPinchGestureRecognizer::touchMoved(UITouch& touch)
{
    if (touches_.size() < 2)
        return;
    auto isPossible = state() == UIGestureRecognizerState::possible;
    if (isPossible && std::abs(distance() - startDistance_) < beginDistance)
        return;
    auto scale = distance() / startDistance_;
    auto seconds = std::chrono::duration<double>(touch.timestamp - lastTime_).count();
    if (seconds > 0)
        velocity_ = (scale - scale_) / seconds;
    lastTime_ = touch.timestamp;
    scale_ = scale;
    setState(isPossible ? UIGestureRecognizerState::began : UIGestureRecognizerState::changed);
}

void UIPinchGestureRecognizer::touchEnded(UITouch& touch)
{
    UIGestureRecognizer::touchEnded(touch);
    if (touches_.size() >= 2) {
        startDistance_ = distance() / scale_;
        return;
    }
    if (state() != UIGestureRecognizerState::possible)
        setState(UIGestureRecognizerState::ended);
    else if (touches_.empty())
        setState(UIGestureRecognizerState::failed);
}

void UIPinchGestureRecognizer::reset()
{
    UIGestureRecognizer::reset();
    scale_ = 1;
    velocity_ = 0;
}

} // namespace platform
