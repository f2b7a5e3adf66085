// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/UIAccessibility.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIView.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harness {

class ViewHarness;

// A button that goes down, as often as `tapCount` says.
struct Press {
    platform::UIPointerButton button = platform::UIPointerButton::primary;
    platform::UIKeyModifierFlags modifiers;
    platform::UITouchType type = platform::UITouchType::mouse;
    int tapCount = 1;
};

// How a drag goes: `steps` moves over `time`, then `rest` without moving before what is down is lifted. Without a rest the
// drag ends in its speed, which is a fling.
struct DragOptions {
    platform::Duration time = std::chrono::milliseconds{200};
    platform::Duration rest = std::chrono::milliseconds{0};
    int steps = 10;
    Press press;
};

// What a user meets on screen, as assistive technology names it: a view with a role. Taken from a harness by its role and
// label, and good for as long as its view lives; each question is answered as things stand then. What is done to it goes
// through the window, in the middle of what is seen of it. What cannot be done ends the program and says why: a view that
// went, that lies out of sight, or that something else covers.
class Element {
public:
    Element(ViewHarness& harness, std::shared_ptr<platform::UIView> view);

    platform::UIView& view() const;
    bool isAlive() const { return !view_.expired(); } // in a window, or kept by somebody

    // --- What assistive technology says of it -----------------------------------------------------
    platform::AccessibilityProperties properties() const { return view().accessibilityNow(); }
    platform::AccessibilityRole role() const { return properties().role; }
    std::string label() const { return properties().label; }
    std::string value() const { return properties().value; }
    std::string hint() const { return properties().hint; }
    bool isEnabled() const { return properties().isEnabled; }
    bool isSelected() const { return properties().isSelected; } // of a toggle: it is on
    std::optional<platform::AccessibilityRange> range() const { return properties().range; }
    bool isFocused() const; // has the keyboard
    // The default action, and steps or a value for what has a range: as assistive technology asks for them, without the
    // pointer. False when the view refuses, as a disabled one does.
    bool activate() const;
    bool increment(int steps = 1) const;
    bool decrement(int steps = 1) const;
    bool setValue(double value) const; // Requires: inside of the range

    // --- Where it is on screen now, while it or what is around it moves; in the window's coordinates ----
    platform::CGRect frame() const;
    // What neither the window nor a clipping view cuts off; empty for what is out of sight.
    platform::CGRect visibleFrame() const;
    bool isOnScreen() const { return !visibleFrame().isEmpty(); }

    // --- Hands: mouse, unless the press says otherwise ------------------------------------------------
    // While something moves they go to where it is going, as hit testing does.
    void tap(const Press& press = {}) const;
    void doubleTap() const { tap({.tapCount = 2}); }
    void longPress(platform::Duration time = std::chrono::milliseconds{700}, const Press& press = {}) const;
    void drag(platform::CGVector by, const DragOptions& options = {}) const;
    void hover() const;
    bool scroll(platform::CGVector delta) const; // by the wheel, over it
    // Taps it unless it has the keyboard already, then types.
    void type(std::string_view text) const;

    // --- Inside of it: as the harness' own, see ViewHarness.h -------------------------------------------
    Element find(platform::AccessibilityRole role, std::string_view label) const;
    Element find(platform::AccessibilityRole role) const;
    std::optional<Element> tryFind(platform::AccessibilityRole role, std::string_view label) const;
    std::vector<Element> findAll(platform::AccessibilityRole role) const;
    std::vector<Element> findAll(platform::AccessibilityRole role, std::string_view label) const;

private:
    platform::CGRect seenPart(platform::CGRect (*place)(const platform::UIView&, platform::CGRect)) const;
    platform::CGPoint reach() const; // a place of it that the pointer gets to
    std::string name() const;        // for messages

    ViewHarness* harness_; // which outlives its elements
    std::weak_ptr<platform::UIView> view_;
};

// "button": the word that lists and messages use.
std::string_view roleName(platform::AccessibilityRole role);

// Everything that assistive technology hears of in `root`, as lines indented by depth: role, label in quotes, then what is
// unusual. For messages and for comparing a tree with a text.
std::string describeElements(const platform::UIView& root);

} // namespace harness
