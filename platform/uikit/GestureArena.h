// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIGestureRecognizer.h"

#include <memory>

namespace platform {

// Decides who gets the touches of one window: the view that was hit, or the gesture recognisers of it and of the views
// around it. Owned by the window. Any of the calls out may remove views, or close the window. Main thread only.
class GestureArena {
public:
    explicit GestureArena(UIWindow& window);
    ~GestureArena();
    GestureArena(const GestureArena&) = delete;
    GestureArena& operator=(const GestureArena&) = delete;

    // Hands a touch, whose phase and place are set, to recognisers and views. In `began` the window has set
    // `touch.view` to the view that was hit (none: nobody is interested). The touch lives until this returns from
    // `ended` or `cancelled`.
    void send(UITouch& touch);

    // The pointer moved over `hit` (none: over nothing of interest) with no button down, or left the window.
    void pointerMoved(CGPoint windowLocation, const std::shared_ptr<UIView>& hit);
    void pointerLeft();

    // Touches in flight are cancelled: the window closes or is no longer shown.
    void cancelAll();

private:
    friend class UIGestureRecognizer;
    struct State;

    // A recogniser asks to change its state; it does, now, later or never, as the others allow.
    void wantsState(UIGestureRecognizer& recognizer, UIGestureRecognizerState state);
    void forget(UIGestureRecognizer& recognizer);

    std::shared_ptr<State> state_; // outlives an arena that goes while it calls out
};

} // namespace platform
