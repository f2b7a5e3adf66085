// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/environment.h"
#include "platform/uikit/UIEvent.h"

#include <optional>
#include <string>
#include <utility>

namespace platform {

// The modifier keys of a shortcut; an option set. Command is the key that commands are given with: Control on the desktop,
// where the platform's own Command key (Super, Meta) counts as well.
struct EventModifiers {
    std::uint8_t rawValue = 0;
    static const EventModifiers none, shift, option, command;
    friend constexpr EventModifiers operator|(EventModifiers a, EventModifiers b)
    {
        return {static_cast<std::uint8_t>(a.rawValue | b.rawValue)};
    }
    bool operator==(const EventModifiers&) const = default;
};

inline constexpr EventModifiers EventModifiers::none{0}, EventModifiers::shift{1}, EventModifiers::option{2},
    EventModifiers::command{4};

// The key of a shortcut: one that has a name, or the character that it types, lower case.
struct KeyEquivalent {
    UIKeyCode key = UIKeyCode::unknown;
    std::string character;

    static KeyEquivalent of(std::string character) { return {UIKeyCode::character, std::move(character)}; }
    static KeyEquivalent leftArrow() { return {UIKeyCode::left, {}}; }
    static KeyEquivalent rightArrow() { return {UIKeyCode::right, {}}; }
    static KeyEquivalent upArrow() { return {UIKeyCode::up, {}}; }
    static KeyEquivalent downArrow() { return {UIKeyCode::down, {}}; }
    static KeyEquivalent space() { return {UIKeyCode::space, {}}; }
    static KeyEquivalent returnKey() { return {UIKeyCode::returnKey, {}}; }
    static KeyEquivalent escape() { return {UIKeyCode::escape, {}}; }
    static KeyEquivalent deleteKey() { return {UIKeyCode::deleteBackward, {}}; }
    static KeyEquivalent tab() { return {UIKeyCode::tab, {}}; }
    static KeyEquivalent home() { return {UIKeyCode::home, {}}; }
    static KeyEquivalent end() { return {UIKeyCode::end, {}}; }
    bool operator==(const KeyEquivalent&) const = default;
};

struct KeyboardShortcut {
    KeyEquivalent key;
    EventModifiers modifiers = EventModifiers::command;

    static KeyboardShortcut defaultAction() { return {KeyEquivalent::returnKey(), EventModifiers::none}; }
    static KeyboardShortcut cancelAction() { return {KeyEquivalent::escape(), EventModifiers::none}; }
    // Whether the press is exactly this; a key held down repeats nothing.
    bool matches(const UIPress& press) const;
    bool operator==(const KeyboardShortcut&) const = default;
};

struct KeyboardShortcutKey : environment_keys::OptionalKey<KeyboardShortcut> { };

// Presses the first button or toggle of the content when that key is pressed anywhere in the window and nobody else has
// taken it: a text that is edited takes what it types.
inline auto keyboardShortcut(std::optional<KeyboardShortcut> shortcut)
{
    return environment<KeyboardShortcutKey>(std::move(shortcut));
}
inline auto keyboardShortcut(KeyEquivalent key, EventModifiers modifiers = EventModifiers::command)
{
    return keyboardShortcut(KeyboardShortcut{std::move(key), modifiers});
}

} // namespace platform
