// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPanGestureRecognizer.h"

#include "platform/uikit/UIView.h"

#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr Duration velocityWindow = 100ms;

// A movement in the window's coordinates as it is in the view's: the view may be scaled or turned.
CGPoint vectorIn(const UIView& view, CGPoint vector)
{
    return view.convertFrom(vector, nullptr) - view.convertFrom(CGPoint{}, nullptr);
}

} // namespace

CGPoint UIPanGestureRecognizer::translation(const UIView& in) const
{
    return vectorIn(in, moved_ - zero_);
}

void UIPanGestureRecognizer::setTranslation(CGPoint translation, const UIView& in)
{
    auto inWindow = in.convertTo(translation, nullptr) - in.convertTo(CGPoint{}, nullptr);
    zero_ = moved_ - inWindow;
}

CGPoint UIPanGestureRecognizer::velocity(const UIView& in) const
{
    if (track_.size() < 2)
        return {};
    auto& first = track_.front();
    auto& last = track_.back();
    auto seconds = std::chrono::duration<double>(last.time - first.time).count();
    if (!(seconds > 0))
        return {};
    auto way = last.moved - first.moved;
    return vectorIn(in, {way.x / seconds, way.y / seconds});
}

CGPoint UIPanGestureRecognizer::middle() const
{
    CGPoint sum;
    for (auto* touch : touches_)
        sum = sum + touch->windowLocation;
    auto count = static_cast<CGFloat>(std::max<std::size_t>(touches_.size(), 1));
    return {sum.x / count, sum.y / count};
}

void UIPanGestureRecognizer::note(Instant time)
{
    track_.push_back({time, moved_});
    while (track_.size() > 1 && track_.front().time < time - velocityWindow)
        track_.pop_front();
}

void UIPanGestureRecognizer::touchBegan(UITouch& touch)
{
    auto isWrongButton = touch.type == UITouchType::mouse && touch.button != button;
    UIGestureRecognizer::touchBegan(touch);
    if (state() == UIGestureRecognizerState::possible
        && (isWrongButton || touches_.size() > maximumNumberOfTouches)) {
        setState(UIGestureRecognizerState::failed);
        return;
    }
    lastMiddle_ = middle();
    note(touch.timestamp);
}

void UIPanGestureRecognizer::touchMoved(UITouch& touch)
{
    auto now = middle();
    moved_ = moved_ + (now - lastMiddle_);
    lastMiddle_ = now;
    note(touch.timestamp);
    if (state() != UIGestureRecognizerState::possible)
        setState(UIGestureRecognizerState::changed);
    else if (touches_.size() >= minimumNumberOfTouches && std::hypot(moved_.x, moved_.y) >= minimumDistance)
        setState(UIGestureRecognizerState::began);
}

void UIPanGestureRecognizer::touchEnded(UITouch& touch)
{
    if (touches_.size() == 1) {
        auto now = middle();
        moved_ = moved_ + (now - lastMiddle_);
        note(touch.timestamp);
    }
    UIGestureRecognizer::touchEnded(touch);
    lastMiddle_ = middle();
    if (touches_.empty())
        setState(state() == UIGestureRecognizerState::possible ? UIGestureRecognizerState::failed
                                                               : UIGestureRecognizerState::ended);
}

void UIPanGestureRecognizer::touchCancelled(UITouch& touch)
{
    UIGestureRecognizer::touchCancelled(touch);
    lastMiddle_ = middle();
}

void UIPanGestureRecognizer::reset()
{
    UIGestureRecognizer::reset();
    moved_ = zero_ = {};
    track_.clear();
}

} // namespace platform
