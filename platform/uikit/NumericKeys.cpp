// SPDX-License-Identifier: MIT
#include "platform/uikit/NumericKeys.h"

namespace platform {

std::optional<double> NumericKeys::valueAfter(const UIPress& press, double value) const
{
    if ((press.modifiers.rawValue & ~UIKeyModifierFlags::keypad) != 0)
        return std::nullopt;
    switch (press.key) {
    case UIKeyCode::right:
        return value + (isRightToLeft ? -arrowStep : arrowStep);
    case UIKeyCode::left:
        return value + (isRightToLeft ? arrowStep : -arrowStep);
    case UIKeyCode::up:
        return value + arrowStep;
    case UIKeyCode::down:
        return value - arrowStep;
    case UIKeyCode::pageUp:
        return range.clamped(value + pageStep);
    case UIKeyCode::pageDown:
        return range.clamped(value - pageStep);
    case UIKeyCode::home:
        return range.lower;
    case UIKeyCode::end:
        return range.upper;
    default:
        return std::nullopt;
    }
}

} // namespace platform
