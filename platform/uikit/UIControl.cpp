// SPDX-License-Identifier: MIT
#include "platform/uikit/UIControl.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UILongPressGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"

#include <algorithm>
#include <utility>

namespace platform {

using Events = UIControlEvents;

UIControl::ActionIdentifier UIControl::addAction(Action action, UIControlEvents events)
{
    assertOnMainThread();
    actions_.push_back({nextIdentifier_, events, std::make_shared<Action>(std::move(action))});
    return nextIdentifier_++;
}

void UIControl::removeAction(ActionIdentifier identifier)
{
    assertOnMainThread();
    std::erase_if(actions_, [=](auto& entry) { return entry.identifier == identifier; });
}

void UIControl::removeAllActions()
{
    assertOnMainThread();
    actions_.clear();
}

void UIControl::sendActions(UIControlEvents events)
{
    assertOnMainThread();
    auto self = weak_from_this().lock(); // an action may drop the last reference
    for (auto& entry : std::vector(actions_)) {
        auto isStillThere =
            std::ranges::find(actions_, entry.identifier, &Entry::identifier) != actions_.end();
        if (isStillThere && entry.events.intersects(events.rawValue) && *entry.action)
            (*entry.action)(*this);
    }
}

void UIControl::setEnabled(bool enabled)
{
    assertOnMainThread();
    if (isEnabled_ == enabled)
        return;
    auto self = weak_from_this().lock();
    isEnabled_ = enabled;
    if (!enabled) {
        stopTracking();
        if (isFirstResponder())
            resignFirstResponder();
    }
    controlStateChanged();
}

void UIControl::setSelected(bool selected)
{
    assertOnMainThread();
    if (std::exchange(isSelected_, selected) != selected)
        controlStateChanged();
}

void UIControl::setHighlighted(bool highlighted)
{
    assertOnMainThread();
    if (std::exchange(isHighlighted_, highlighted) != highlighted)
        controlStateChanged();
}

void UIControl::controlStateChanged()
{
    setNeedsDisplay();
}

bool UIControl::performPrimaryAction()
{
    assertOnMainThread();
    if (!isEnabled_)
        return false;
    sendActions({Events::primaryActionTriggered | Events::touchUpInside});
    return true;
}

bool UIControl::keepsTouchesFrom(const UIGestureRecognizer& recognizer) const
{
    return recognizer.view().get() != this
        && (dynamic_cast<const UITapGestureRecognizer*>(&recognizer)
            || dynamic_cast<const UILongPressGestureRecognizer*>(&recognizer));
}

bool UIControl::pressesBegan(const UIPress& press)
{
    auto isPlain = (press.modifiers.rawValue & ~UIKeyModifierFlags::keypad) == 0;
    auto isActivation = press.key == UIKeyCode::space || press.key == UIKeyCode::returnKey;
    if (!isPlain || !isActivation || !isEnabled_ || !isFirstResponder())
        return UIView::pressesBegan(press);
    if (!press.isRepeat)
        performPrimaryAction();
    return true;
}

bool UIControl::canBecomeFirstResponder() const
{
    return isEnabled_ && isUserInteractionEnabled();
}

bool UIControl::becomeFirstResponder()
{
    auto done = UIView::becomeFirstResponder();
    if (done)
        controlStateChanged();
    return done;
}

bool UIControl::resignFirstResponder()
{
    auto done = UIView::resignFirstResponder();
    if (done)
        controlStateChanged();
    return done;
}

bool UIControl::isInside(const UITouch& touch) const
{
    auto tolerance = touch.type == UITouchType::finger ? fingerTolerance : 0;
    auto area = bounds();
    return CGRect::make(area.minX() - tolerance, area.minY() - tolerance, area.width() + 2 * tolerance,
                        area.height() + 2 * tolerance)
        .contains(touch.location(*this));
}

void UIControl::touchesBegan(UITouch& touch)
{
    if (touch.type == UITouchType::mouse && touch.button != UIPointerButton::primary)
        return UIView::touchesBegan(touch);
    if (!isEnabled_ || isTracking_)
        return;
    auto self = weak_from_this().lock();
    isTracking_ = isTouchInside_ = beginTracking(touch);
    if (!isTracking_)
        return;
    setHighlighted(true);
    sendActions({Events::touchDown | (touch.tapCount > 1 ? Events::touchDownRepeat : 0)});
}

void UIControl::touchesMoved(UITouch& touch)
{
    if (!isTracking_)
        return UIView::touchesMoved(touch);
    auto self = weak_from_this().lock();
    auto wasInside = std::exchange(isTouchInside_, isInside(touch));
    if (!continueTracking(touch))
        return stopTracking();
    setHighlighted(isTouchInside_);
    if (isTouchInside_ != wasInside)
        sendActions({isTouchInside_ ? Events::touchDragEnter : Events::touchDragExit});
    if (isTracking_)
        sendActions({isTouchInside_ ? Events::touchDragInside : Events::touchDragOutside});
}

void UIControl::touchesEnded(UITouch& touch)
{
    if (!isTracking_)
        return UIView::touchesEnded(touch);
    auto self = weak_from_this().lock();
    auto inside = isInside(touch);
    endTracking(touch);
    isTracking_ = isTouchInside_ = false;
    setHighlighted(false);
    sendActions({inside ? Events::touchUpInside | Events::primaryActionTriggered : Events::touchUpOutside});
}

void UIControl::touchesCancelled(UITouch& touch)
{
    if (!isTracking_)
        return UIView::touchesCancelled(touch);
    stopTracking();
}

void UIControl::stopTracking()
{
    if (!isTracking_)
        return;
    auto self = weak_from_this().lock();
    cancelTracking();
    isTracking_ = isTouchInside_ = false;
    setHighlighted(false);
    sendActions({Events::touchCancel});
}

void UIControl::willMoveToWindow(UIWindow* window)
{
    UIView::willMoveToWindow(window);
    stopTracking();
}

AccessibilityProperties UIControl::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    properties.isEnabled = properties.isEnabled && isEnabled_;
    properties.isSelected = properties.isSelected || isSelected_;
    return properties;
}

bool UIControl::accessibilityActivate()
{
    return performPrimaryAction();
}

} // namespace platform
