// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

// What happened to a control; an option set with the platform's values.
struct UIControlEvents {
    unsigned rawValue = 0;
    static constexpr unsigned touchDown = 1, touchDownRepeat = 2, touchDragInside = 4, touchDragOutside = 8,
                              touchDragEnter = 16, touchDragExit = 32, touchUpInside = 64,
                              touchUpOutside = 128, touchCancel = 256, valueChanged = 4096,
                              primaryActionTriggered = 8192;
    bool intersects(unsigned events) const { return (rawValue & events) != 0; }
};

// A view that the user operates: follows a touch from its beginning on it to its end, and tells its actions. Tap and
// long-press recognisers of the views around it see nothing of that touch. Actions may remove the control.
// Main thread only.
class UIControl : public UIView {
public:
    using Action = std::function<void(UIControl&)>;
    using ActionIdentifier = std::uint64_t;

    using UIView::UIView;
    UIControl() = default;

    // The control keeps the action. Actions run in order of addition; one that was removed by another of the
    // same event is not run any more.
    ActionIdentifier addAction(Action action, UIControlEvents events);
    void removeAction(ActionIdentifier identifier);
    void removeAllActions();
    void sendActions(UIControlEvents events);

    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled); // switching it off cancels a touch under way
    bool isSelected() const { return isSelected_; }
    void setSelected(bool selected);
    bool isHighlighted() const { return isHighlighted_; } // pressed, with the touch over it
    void setHighlighted(bool highlighted);
    bool isTracking() const { return isTracking_; }
    bool isTouchInside() const { return isTouchInside_; }
    // A touch that began inside counts as inside up to this far from the edges: 70 points for fingers, none for the
    // pointer.
    static constexpr CGFloat fingerTolerance = 70;

    // Does what a click does: highlights nothing, sends primaryActionTriggered and touchUpInside. False when disabled.
    bool performPrimaryAction();

    // Whether `recognizer`, which belongs to a view around this one, is kept from touches that begin here.
    virtual bool keepsTouchesFrom(const UIGestureRecognizer& recognizer) const;

    bool pressesBegan(const UIPress& press) override; // Space and Return, while it has the keyboard
    bool canBecomeFirstResponder() const override;
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void touchesBegan(UITouch& touch) override;
    void touchesMoved(UITouch& touch) override;
    void touchesEnded(UITouch& touch) override;
    void touchesCancelled(UITouch& touch) override;
    void willMoveToWindow(UIWindow* window) override;
    AccessibilityProperties accessibilityNow() const override;
    bool accessibilityActivate() override;

protected:
    // The course of one touch. False from the first two ends the tracking.
    virtual bool beginTracking(UITouch&) { return true; }
    virtual bool continueTracking(UITouch&) { return true; }
    virtual void endTracking(UITouch&) { }
    virtual void cancelTracking() { }
    // Enabled, selected, highlighted or focus changed; the default paints again.
    virtual void controlStateChanged();

private:
    struct Entry {
        ActionIdentifier identifier = 0;
        UIControlEvents events;
        std::shared_ptr<Action> action;
    };
    bool isInside(const UITouch& touch) const;
    void stopTracking();

    std::vector<Entry> actions_;
    ActionIdentifier nextIdentifier_ = 1;
    bool isEnabled_ = true;
    bool isSelected_ = false;
    bool isHighlighted_ = false;
    bool isTracking_ = false;
    bool isTouchInside_ = false;
};

} // namespace platform
