// SPDX-License-Identifier: MIT
#include "platform/uikit/UILongPressGestureRecognizer.h"

#include "platform/dispatch/RunLoop.h"

#include <cmath>

namespace platform {

void UILongPressGestureRecognizer::touchBegan(UITouch& touch)
{
    UIGestureRecognizer::touchBegan(touch);
    if (state() != UIGestureRecognizerState::possible)
        return;
    auto isWrongButton = touch.type == UITouchType::mouse && touch.button != button;
    if (isWrongButton || touches_.size() > 1) {
        setState(UIGestureRecognizerState::failed);
        return;
    }
    start_ = touch.windowLocation;
    if (!(minimumPressDuration > 0)) {
        setState(UIGestureRecognizerState::began);
        return;
    }
    // A press that nobody has the patience for: more than a day.
    auto seconds = std::chrono::duration<double>(std::min(minimumPressDuration, 1e5));
    auto& loop = RunLoop::main();
    timer_ = loop.schedule(loop.clock().now() + std::chrono::duration_cast<Duration>(seconds),
                           [this] { setState(UIGestureRecognizerState::began); });
}

void UILongPressGestureRecognizer::touchMoved(UITouch& touch)
{
    if (state() != UIGestureRecognizerState::possible) {
        setState(UIGestureRecognizerState::changed);
        return;
    }
    auto way = std::hypot(touch.windowLocation.x - start_.x, touch.windowLocation.y - start_.y);
    if (way > allowableMovement)
        setState(UIGestureRecognizerState::failed);
}

void UILongPressGestureRecognizer::touchEnded(UITouch& touch)
{
    UIGestureRecognizer::touchEnded(touch);
    if (!touches_.empty())
        return;
    timer_.cancel();
    setState(state() == UIGestureRecognizerState::possible ? UIGestureRecognizerState::failed
                                                           : UIGestureRecognizerState::ended);
}

void UILongPressGestureRecognizer::reset()
{
    UIGestureRecognizer::reset();
    timer_.cancel();
}

} // namespace platform
