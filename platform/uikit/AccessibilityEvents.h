// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/Forward.h"

#include <cstddef>
#include <string_view>

namespace platform {

// Tells assistive technology what has changed. Costs one test while nobody listens, so views call it
// without asking. Main thread only.

enum class AccessibilityEvent {
    focused, // the view got the keyboard
    labelChanged,
    valueChanged,
    stateChanged, // enabled, selected, read-only, busy ...
    childrenChanged,
    caretMoved,
    selectionChanged,
    textReplaced, // all of it, by another text
};

void notifyAccessibility(UIView& view, AccessibilityEvent event);

// Text was inserted or removed at `offset`, UTF-16 units, after the fact.
void notifyAccessibilityTextInserted(UIView& view, std::size_t offset, std::u16string_view text);
void notifyAccessibilityTextRemoved(UIView& view, std::size_t offset, std::u16string_view text);

} // namespace platform
