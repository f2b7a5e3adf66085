// SPDX-License-Identifier: MIT
#include "platform/uikit/UIResponder.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIWindow.h"

namespace platform {

bool UIResponder::isFirstResponder() const
{
    auto window = responderWindow();
    return window && window->firstResponder_.lock().get() == this;
}

bool UIResponder::becomeFirstResponder()
{
    assertOnMainThread();
    auto window = responderWindow();
    if (!window || !canBecomeFirstResponder() || window->keepsKeyboardFrom(*this))
        return false;
    auto present = window->firstResponder_.lock();
    if (present.get() == this)
        return true;
    if (present && !present->resignFirstResponder())
        return false;
    // Letting go may have had consequences: another one took the keyboard, or this one is out of the window.
    if (responderWindow() != window || window->firstResponder_.lock())
        return false;
    window->firstResponder_ = std::static_pointer_cast<UIResponder>(shared_from_this());
    window->firstResponderDidChange();
    return true;
}

bool UIResponder::resignFirstResponder()
{
    assertOnMainThread();
    auto window = responderWindow();
    if (window && window->firstResponder_.lock().get() == this) {
        window->firstResponder_.reset();
        window->firstResponderDidChange();
    }
    return true;
}

void UIResponder::touchesBegan(UITouch& touch)
{
    if (auto responder = next())
        responder->touchesBegan(touch);
}

void UIResponder::touchesMoved(UITouch& touch)
{
    if (auto responder = next())
        responder->touchesMoved(touch);
}

void UIResponder::touchesEnded(UITouch& touch)
{
    if (auto responder = next())
        responder->touchesEnded(touch);
}

void UIResponder::touchesCancelled(UITouch& touch)
{
    if (auto responder = next())
        responder->touchesCancelled(touch);
}

bool UIResponder::pressesBegan(const UIPress& press)
{
    auto responder = next();
    return responder && responder->pressesBegan(press);
}

bool UIResponder::pressesEnded(const UIPress& press)
{
    auto responder = next();
    return responder && responder->pressesEnded(press);
}

bool UIResponder::scrollWheel(const UIScrollWheel& wheel)
{
    auto responder = next();
    return responder && responder->scrollWheel(wheel);
}

} // namespace platform
