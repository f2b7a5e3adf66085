// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/Forward.h"

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

// What the user did, as the window hands it to responders. Main thread only.

enum class UITouchPhase { began, moved, stationary, ended, cancelled };
enum class UITouchType { finger, mouse, pen };
enum class UIPointerButton { primary, secondary, middle };

// Modifier keys held; an option set.
struct UIKeyModifierFlags {
    std::uint8_t rawValue = 0;
    static constexpr std::uint8_t shift = 1, control = 2, alternate = 4, command = 8, keypad = 16;
    bool contains(std::uint8_t flags) const { return (rawValue & flags) == flags; }
    bool operator==(const UIKeyModifierFlags&) const = default;
};

// One finger, or the pointer while a button is down, from its beginning to its end: the same object in
// all phases. It belongs to the view that was hit when it began.
struct UITouch {
    UITouchType type = UITouchType::mouse;
    UIPointerButton button = UIPointerButton::primary;
    UITouchPhase phase = UITouchPhase::began;
    UIKeyModifierFlags modifiers;
    int tapCount = 1; // 2 for the second press of a double click, and so on
    Instant timestamp;
    CGPoint windowLocation; // points, in the window
    CGPoint previousWindowLocation;
    std::weak_ptr<UIView> view;
    std::weak_ptr<UIWindow> window;

    CGPoint location(const UIView& in) const;
    CGPoint previousLocation(const UIView& in) const;
};

// The keys that have a meaning of their own; all others come as `character` with the text they type.
enum class UIKeyCode {
    character,
    escape,
    space,
    tab,
    returnKey,
    deleteBackward,
    deleteForward,
    insert,
    left,
    right,
    up,
    down,
    pageUp,
    pageDown,
    home,
    end,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    unknown,
};

struct UIPress {
    UIKeyCode key = UIKeyCode::unknown;
    UIKeyModifierFlags modifiers;
    std::string characters; // what the key types with its modifiers, UTF-8
    // The key's own character without Control and Alternate, lower case: "c" for Ctrl+C. Empty for keys
    // that type nothing.
    std::string charactersIgnoringModifiers;
    bool isRepeat = false;
    Instant timestamp;
};

// A turn of the wheel or a two-finger scroll.
struct UIScrollWheel {
    CGVector delta;          // points the content shall move; positive shows what is further left or above
    bool isPrecise = false;  // a touchpad's own points, not a wheel's notches
    bool isMomentum = false; // the device's own after-run
    UIKeyModifierFlags modifiers;
    CGPoint windowLocation;
    Instant timestamp;
};

} // namespace platform
