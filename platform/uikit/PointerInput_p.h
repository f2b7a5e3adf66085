// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/ClickCounter.h"
#include "platform/uikit/UIEvent.h"

#include <map>
#include <memory>

#include <QtGui/QPointingDevice>

class QMouseEvent;
class QTabletEvent;
class QTouchEvent;

namespace platform {

// Follows mouse buttons, fingers and pens from press to release and hands them to the window as touches. Main thread
// only.
class PointerInput {
public:
    PointerInput();

    void handle(UIWindow& window, const QMouseEvent& event);
    void handle(UIWindow& window, const QTouchEvent& event);
    void handle(UIWindow& window, const QTabletEvent& event);
    // Something else took the pointer: what is down will not come up here.
    void cancelAll(UIWindow& window);

private:
    enum class Source { mouse, touch, pen };
    using Key = std::pair<Source, int>; // the button or the finger

    void begin(UIWindow& window, Key key, UITouch touch);
    void move(UIWindow& window, Key key, CGPoint place);
    void end(UIWindow& window, Key key, CGPoint place, UITouchPhase phase);

    std::map<Key, std::unique_ptr<UITouch>> touches_; // those that are down
    ClickCounter clicks_;
};

} // namespace platform
