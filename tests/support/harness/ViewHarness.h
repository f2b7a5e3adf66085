// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/harness/Element.h"
#include "tests/support/harness/pixels.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harness {

// A window without a display and the hands of a user: what a test does goes through hit testing, gestures and the
// responder chain as on the desktop, in a time that stands still until the test moves it. Coordinates are the window's.
// Declarative views are shown by DeclarativeHarness.h. Main thread only, one at a time.
//
//     ViewHarness harness({320, 200}, {.userInterfaceStyle = UIUserInterfaceStyle::dark});
//     harness.show(std::move(controller));
//     harness.find(AccessibilityRole::button, "Play").tap();
//     harness.advance(300ms);
//     EXPECT_EQ(harness.find(AccessibilityRole::slider).value(), "0:01");
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

    // Appearance, layout direction, text size, reduced motion ... from now on, as when the user changes them.
    const platform::UITraitCollection& traits() { return window_->traitCollection(); }
    void changeTraits(const std::function<void(platform::UITraitCollection&)>& change);
    void resize(platform::CGSize size);

    // --- What is on screen ------------------------------------------------------------------------
    // The one element with that role and that label or identifier, as assistive technology hears of it: nothing that is
    // hidden, and beside something modal only that. Ends the program, and says what there is, when there is none or when
    // there are several; `findAll` tells several apart, in reading order.
    Element find(platform::AccessibilityRole role, std::string_view label);
    Element find(platform::AccessibilityRole role); // the only one of that role
    std::optional<Element> tryFind(platform::AccessibilityRole role,
                                   std::string_view label); // the first, or none
    std::optional<Element> tryFind(platform::AccessibilityRole role);
    std::vector<Element> findAll(platform::AccessibilityRole role);
    std::vector<Element> findAll(platform::AccessibilityRole role, std::string_view label);
    // What has the keyboard, when it is an element.
    std::optional<Element> focused();
    // The tree as text: see describeElements.
    std::string describe() { return describeElements(*window_); }
    // Any view, in the order of the tree, with that accessibility label or identifier, element or not. Ends the program
    // when there is none.
    platform::UIView& find(std::string_view label);

    // --- Pointer ---------------------------------------------------------------------------------
    using Press = harness::Press;
    void tap(platform::CGPoint place) { tap(place, Press{}); }
    void tap(platform::CGPoint place, const Press& press); // tapCount presses, one after the other
    void tap(std::string_view label);                      // in the middle of that view
    void down(platform::CGPoint place) { down(place, Press{}); }
    void down(platform::CGPoint place, const Press& press);
    void moveTo(platform::CGPoint place); // what is down
    // Down at the first place and over the others: pull({{10, 10}, {40, 10}}).up().
    ViewHarness& pull(std::initializer_list<platform::CGPoint> places);
    void up(); // where it is
    void cancel();
    // Down, there in ten steps over the time given (200 ms), up.
    void drag(platform::CGPoint from, platform::CGPoint to);
    void drag(platform::CGPoint from, platform::CGPoint to, platform::Duration time, const Press& press);
    void drag(platform::CGPoint from, platform::CGPoint to, const DragOptions& options);
    void hover(platform::CGPoint place);
    bool scroll(platform::CGPoint place, platform::CGVector delta);
    bool turnWheel(platform::CGPoint place, const platform::UIScrollWheel& wheel);

    // --- Keyboard --------------------------------------------------------------------------------
    bool press(platform::UIKeyCode key, std::uint8_t modifiers = 0);
    void press(std::initializer_list<platform::UIKeyCode> keys);    // one after the other
    bool press(std::string_view character, std::uint8_t modifiers); // "c" with control
    void type(std::string_view text);                               // one key for each character

    // --- Time and pictures -----------------------------------------------------------------------
    void advance(platform::Duration time) { clock_.advance(time); }
    void settle() { clock_.settle(); }
    // Settles and paints what is dirty; gives the rectangles that were painted.
    std::vector<platform::CGRect> paintFrame();
    // Lets time pass in frames of 1/60 s, painting after each what is dirty.
    struct Frames {
        int passed = 0;
        int painted = 0; // those that had anything to paint
        double area = 0; // square points painted in all
    };
    Frames playFrames(platform::Duration time);
    // All of the window as it is now, at the display scale of its traits.
    platform::UIImage snapshot();

private:
    friend class Element;
    using Label = std::optional<std::string_view>; // none: any
    Element findWithin(const platform::UIView& root, platform::AccessibilityRole role, Label label);
    std::vector<Element> findAllWithin(const platform::UIView& root, platform::AccessibilityRole role,
                                       Label label);
    void send(platform::UITouchPhase phase, platform::CGPoint place);
    bool send(platform::UIPress press);
    platform::UIImage picture(const std::vector<platform::CGRect>& painted);

    platform::VirtualClock clock_;
    std::shared_ptr<platform::UIWindow> window_;
    std::shared_ptr<platform::UITouch> touch_; // what is down
};

} // namespace harness
