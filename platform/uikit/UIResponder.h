// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/Forward.h"

#include <memory>
#include <string_view>

namespace platform {

// How a responder takes text from the keyboard and the input method. Offsets are the responder's own.
class UITextInput {
public:
    virtual ~UITextInput() = default;
    // Replaces the selection. Well-formed UTF-8.
    virtual void insertText(std::string_view text) = 0;
    // Shows text that is still being composed in place of the selection; an empty text ends it.
    virtual void setMarkedText(std::string_view text) = 0;
    // Where the input method puts its candidate window; in window coordinates.
    virtual CGRect caretRectInWindow() const = 0;
};

// What can be asked to react to events. An event that a responder does not handle goes to `next`.
// Main thread only.
class UIResponder : public NSObject {
public:
    // The one to ask after this one; null at the end of the chain.
    virtual std::shared_ptr<UIResponder> next() const { return nullptr; }

    virtual bool canBecomeFirstResponder() const { return false; }
    // Takes the keyboard, in a window only. False when it was refused.
    virtual bool becomeFirstResponder();
    virtual bool resignFirstResponder();
    bool isFirstResponder() const;
    // The window of this first responder got the keyboard or lost it to another window.
    virtual void keyWindowDidChange() { }

    // Each hands the event to `next` unless overridden. For a touch, the same object comes in all phases.
    virtual void touchesBegan(UITouch& touch);
    virtual void touchesMoved(UITouch& touch);
    virtual void touchesEnded(UITouch& touch);
    virtual void touchesCancelled(UITouch& touch);
    // True when this responder or one after it handled the key.
    virtual bool pressesBegan(const UIPress& press);
    virtual bool pressesEnded(const UIPress& press);
    virtual bool scrollWheel(const UIScrollWheel& wheel);

    // Non-null for a responder that takes text while it is the first one.
    virtual UITextInput* textInput() { return nullptr; }

protected:
    // The window whose first responder this can be; null when there is none yet.
    virtual std::shared_ptr<UIWindow> responderWindow() const { return nullptr; }
};

} // namespace platform
