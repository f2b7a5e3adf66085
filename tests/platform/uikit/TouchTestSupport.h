// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIWindow.h"

#include <memory>
#include <optional>

namespace platform {

using namespace std::chrono_literals;

// A window without a display, on a clock that stands still.
struct Stage {
    VirtualClock clock;
    std::shared_ptr<UIWindow> window;

    explicit Stage(CGSize size = {400, 400}, UITraitCollection traits = {})
        : window(std::make_shared<UIWindow>(CGRect{{}, size}))
    {
        window->setBaseTraits(traits);
    }

    template <class View, class... Arguments>
    std::shared_ptr<View> add(CGRect frame, Arguments&&... arguments)
    {
        auto view = std::make_shared<View>(std::forward<Arguments>(arguments)...);
        view->setFrame(frame);
        window->addSubview(view);
        window->layoutNow();
        return view;
    }
};

// One finger or pointer, as the window system would report it.
class Finger {
public:
    explicit Finger(Stage& stage, UITouchType type = UITouchType::finger)
        : stage_(stage)
    {
        touch_.type = type;
    }

    Finger& down(CGPoint point, UIPointerButton button = UIPointerButton::primary)
    {
        touch_.button = button;
        touch_.view.reset();
        touch_.windowLocation = point;
        return send(UITouchPhase::began);
    }
    Finger& moveTo(CGPoint point)
    {
        touch_.previousWindowLocation = touch_.windowLocation;
        touch_.windowLocation = point;
        return send(UITouchPhase::moved);
    }
    Finger& up() { return send(UITouchPhase::ended); }
    Finger& cancel() { return send(UITouchPhase::cancelled); }
    Finger& wait(Duration duration)
    {
        stage_.clock.advance(duration);
        return *this;
    }
    Finger& tap(CGPoint point) { return down(point).up(); }
    // In equal steps, 10 ms each.
    Finger& drag(CGPoint to, int steps = 10)
    {
        auto from = touch_.windowLocation;
        for (int i = 1; i <= steps; ++i) {
            wait(10ms);
            moveTo({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps});
        }
        return *this;
    }

private:
    Finger& send(UITouchPhase phase)
    {
        touch_.phase = phase;
        touch_.timestamp = RunLoop::main().clock().now();
        stage_.window->sendTouch(touch_);
        return *this;
    }

    Stage& stage_;
    UITouch touch_;
};

} // namespace platform
