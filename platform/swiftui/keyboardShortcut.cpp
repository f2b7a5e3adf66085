// SPDX-License-Identifier: MIT
#include "platform/swiftui/keyboardShortcut.h"

namespace platform {

bool KeyboardShortcut::matches(const UIPress& press) const
{
    if (press.isRepeat || press.key != key.key)
        return false;
    if (key.key == UIKeyCode::character && press.charactersIgnoringModifiers != key.character)
        return false;
    using Held = UIKeyModifierFlags;
    auto held = [&](std::uint8_t flags) { return (press.modifiers.rawValue & flags) != 0; };
    EventModifiers modifiersHeld;
    if (held(Held::shift))
        modifiersHeld = modifiersHeld | EventModifiers::shift;
    if (held(Held::alternate))
        modifiersHeld = modifiersHeld | EventModifiers::option;
    if (held(Held::control | Held::command))
        modifiersHeld = modifiersHeld | EventModifiers::command;
    return modifiersHeld == modifiers;
}

} // namespace platform
