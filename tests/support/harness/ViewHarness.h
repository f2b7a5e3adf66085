// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harness {

// A window without a display and the hands of a user: what a test does goes through hit testing, gestures and the
// responder chain as on the desktop, in a time that stands still until the test moves it. Coordinates are the window's.
class ViewHarness {
public:
    explicit ViewHarness(platform::CGSize size = {320, 480}, const platform::UITraitCollection& traits = {});
    ViewHarness(const ViewHarness&) = delete; // it owns the clock
    ViewHarness& operator=(const ViewHarness&) = delete;
    ~ViewHarness();

    // Shows the controller, or the view, in all of the window, laid out and with all events of appearing. The
    // window has the keyboard.
    void show(std::shared_ptr<platform::UIViewController> controller);
    void show(std::shared_ptr<platform::UIView> view);

    platform::VirtualClock& clock() { return clock_; }
    platform::UIWindow& window() { return *window_; }
    const std::shared_ptr<platform::UIWindow>& sharedWindow() { return window_; }
    // Gives up the window, as its last owner.
    void dropWindow() { window_.reset(); }
    // The first view, in the order of the tree, with that accessibility label or identifier. Fails the test and ends
    // the program when there is none.
    platform::UIView& find(std::string_view label);

    // --- Pointer ---------------------------------------------------------------------------------
    struct Press {
        platform::UIPointerButton button = platform::UIPointerButton::primary;
        platform::UIKeyModifierFlags modifiers;
        platform::UITouchType type = platform::UITouchType::mouse;
        int tapCount = 1;
    };
    void tap(platform::CGPoint place) { tap(place, Press{}); }
    void tap(platform::CGPoint place, const Press& press); // tapCount presses, one after the other
    void tap(std::string_view label);                      // in the middle of that view
    void down(platform::CGPoint place) { down(place, Press{}); }
    void down(platform::CGPoint place, const Press& press);
    void moveTo(platform::CGPoint place); // what is down
    void up();                            // where it is
    void cancel();
    // Down, there in ten steps over the time given (200 ms), up.
    void drag(platform::CGPoint from, platform::CGPoint to);
    void drag(platform::CGPoint from, platform::CGPoint to, platform::Duration time, const Press& press);
    void hover(platform::CGPoint place);
    bool scroll(platform::CGPoint place, platform::CGVector delta);
    bool turnWheel(platform::CGPoint place, const platform::UIScrollWheel& wheel);

    // --- Keyboard --------------------------------------------------------------------------------
    bool press(platform::UIKeyCode key, std::uint8_t modifiers = 0);
    bool press(std::string_view character, std::uint8_t modifiers); // "c" with control
    void type(std::string_view text);                               // one key for each character

    // --- Time and pictures -----------------------------------------------------------------------
    void advance(platform::Duration time) { clock_.advance(time); }
    void settle() { clock_.settle(); }
    // Settles and paints what is dirty; gives the rectangles that were painted.
    std::vector<platform::CGRect> paintFrame();
    // All of the window as it is now, at the display scale of its traits.
    platform::UIImage snapshot();

private:
    void send(platform::UITouchPhase phase, platform::CGPoint place);
    bool send(platform::UIPress press);
    platform::UIImage picture(const std::vector<platform::CGRect>& painted);

    platform::VirtualClock clock_;
    std::shared_ptr<platform::UIWindow> window_;
    std::shared_ptr<platform::UITouch> touch_; // what is down
};

// The colour of a picture at a place in points, rounded to bytes: "rrggbb", or "rrggbbaa" where it is not opaque.
std::string colorAt(const platform::UIImage& image, platform::CGPoint place);

} // namespace harness
