// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIResponder.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

enum class UIGestureRecognizerState { possible, began, changed, ended, cancelled, failed };

// Watches the touches of its view and the view's subviews and recognises one gesture in them. Discrete gestures go
// possible -> ended or failed; continuous ones possible -> began -> changed ... -> ended or cancelled, or failed. After
// an end state it is reset to possible. A recogniser that begins cancels the touches of the views beneath unless
// cancelsTouchesInView is off, and prevents others that began no earlier, unless either side allows simultaneity.
// Main thread only.
class UIGestureRecognizer : public NSObject {
public:
    using Action = std::function<void(UIGestureRecognizer&)>;
    explicit UIGestureRecognizer(Action action = {});
    ~UIGestureRecognizer() override;

    Action onChange; // called in each state but possible and failed
    UIGestureRecognizerState state() const { return state_; }
    std::shared_ptr<UIView> view() const;
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled); // switching it off cancels what is under way
    bool cancelsTouchesInView = true;
    std::function<bool(UIGestureRecognizer&)> shouldBegin;
    std::function<bool(UIGestureRecognizer& self, UITouch& touch)> shouldReceive;
    std::function<bool(UIGestureRecognizer& self, UIGestureRecognizer& other)> shouldRecognizeSimultaneously;
    // Waits until `other` has failed.
    void requireToFail(std::shared_ptr<UIGestureRecognizer> other);
    // The middle of its touches.
    virtual CGPoint location(const UIView& in) const;
    std::size_t numberOfTouches() const { return touches_.size(); }

    // What subclasses decide on; called by the window in event order.
    virtual void touchBegan(UITouch& touch);
    virtual void touchMoved(UITouch&) { }
    virtual void touchEnded(UITouch& touch);
    virtual void touchCancelled(UITouch& touch);
    virtual void reset(); // back to possible, forget everything
    // Whether its beginning makes `other`, which has not begun, fail.
    virtual bool canPrevent(const UIGestureRecognizer& /*other*/) const { return true; }
    // Possible still, although no touch is down: a second tap may follow.
    virtual bool isAwaitingTouches() const { return false; }

protected:
    void setState(UIGestureRecognizerState state);
    std::vector<UITouch*> touches_; // of this gesture; each is the window's until it ended

private:
    friend class UIView;
    friend class GestureArena;
    void cancel();

    UIView* view_ = nullptr; // clears it before it goes
    UIGestureRecognizerState state_ = UIGestureRecognizerState::possible;
    bool isEnabled_ = true;
    std::vector<std::weak_ptr<UIGestureRecognizer>> mustFailFirst_;
    GestureArena* arena_ = nullptr; // while it has something to do with touches; outlived by the arena's care
    std::optional<UIGestureRecognizerState> heldState_; // wished for, until those that must fail first have
    CGPoint lastWindowLocation_;
};

} // namespace platform
