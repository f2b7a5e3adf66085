// SPDX-License-Identifier: MIT
#include "platform/uikit/UIHoverGestureRecognizer.h"

#include "platform/uikit/UIView.h"

namespace platform {

CGPoint UIHoverGestureRecognizer::location(const UIView& in) const
{
    return in.convertFrom(windowLocation_, nullptr);
}

void UIHoverGestureRecognizer::pointerMoved(CGPoint windowLocation)
{
    auto isNew = state() == UIGestureRecognizerState::possible;
    if (!isNew && windowLocation == windowLocation_)
        return;
    windowLocation_ = windowLocation;
    if (!isNew)
        setState(UIGestureRecognizerState::changed);
    else if (!shouldBegin || shouldBegin(*this))
        setState(UIGestureRecognizerState::began);
}

void UIHoverGestureRecognizer::pointerLeft()
{
    if (state() != UIGestureRecognizerState::possible)
        setState(UIGestureRecognizerState::ended);
}

} // namespace platform
