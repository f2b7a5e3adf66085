// SPDX-License-Identifier: MIT
#include "platform/uikit/UITapGestureRecognizer.h"

#include "platform/dispatch/RunLoop.h"

#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr Duration longestTap = 750ms;
constexpr Duration longestPause = 350ms; // between two taps
constexpr CGFloat tapSlop = 10;          // points that a tap may move
constexpr CGFloat multipleTapSlop = 45;  // points between the taps of a multiple one

CGFloat distance(CGPoint a, CGPoint b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

} // namespace

void UITapGestureRecognizer::touchBegan(UITouch& touch)
{
    if (isRecognized_)
        return; // waiting for another to fail; a further tap is none of its business
    UIGestureRecognizer::touchBegan(touch);
    auto isWrongButton = touch.type == UITouchType::mouse && touch.button != button;
    if (isWrongButton || ++fingers_ > numberOfTouchesRequired)
        return fail();
    if (taps_ == 0 && fingers_ == 1)
        start_ = touch.windowLocation;
    else if (fingers_ == 1 && distance(start_, touch.windowLocation) > multipleTapSlop)
        return fail();
    if (fingers_ == 1)
        failAfter(longestTap);
    fingerStarts_[&touch] = touch.windowLocation;
}

void UITapGestureRecognizer::touchMoved(UITouch& touch)
{
    auto start = fingerStarts_.find(&touch);
    if (start != fingerStarts_.end() && distance(start->second, touch.windowLocation) > tapSlop)
        fail();
}

void UITapGestureRecognizer::touchEnded(UITouch& touch)
{
    if (isRecognized_)
        return;
    UIGestureRecognizer::touchEnded(touch);
    if (!touches_.empty() || fingers_ == 0)
        return;
    if (fingers_ < numberOfTouchesRequired)
        return fail();
    fingers_ = 0;
    fingerStarts_.clear();
    if (++taps_ < numberOfTapsRequired)
        return failAfter(longestPause);
    timeout_.cancel();
    isRecognized_ = true;
    setState(UIGestureRecognizerState::ended);
}

void UITapGestureRecognizer::reset()
{
    UIGestureRecognizer::reset();
    timeout_.cancel();
    fingerStarts_.clear();
    taps_ = fingers_ = 0;
    isRecognized_ = false;
}

bool UITapGestureRecognizer::canPrevent(const UIGestureRecognizer& other) const
{
    auto* tap = dynamic_cast<const UITapGestureRecognizer*>(&other);
    return !tap || tap->numberOfTapsRequired <= numberOfTapsRequired;
}

bool UITapGestureRecognizer::isAwaitingTouches() const
{
    return taps_ > 0 && taps_ < numberOfTapsRequired;
}

void UITapGestureRecognizer::failAfter(Duration delay)
{
    auto& loop = RunLoop::main();
    timeout_ = loop.schedule(loop.clock().now() + delay, [this] { fail(); });
}

void UITapGestureRecognizer::fail()
{
    timeout_.cancel();
    setState(UIGestureRecognizerState::failed);
}

} // namespace platform
