// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/uikit/text/TextOffsets.h"

#include <optional>

namespace platform {

// What is selected: from where the person began to where the caret is. A value.
struct TextSelection {
    Utf8Offset anchor;
    Utf8Offset head; // where the caret is; before or after the anchor
    // On which side of a row break the caret is drawn.
    CaretAffinity affinity = CaretAffinity::downstream;
    // Where the caret wants to be in rows that are long enough, while it moves up and down.
    std::optional<CGFloat> preferredX;

    static TextSelection caret(Utf8Offset offset, CaretAffinity affinity = CaretAffinity::downstream)
    {
        return {.anchor = offset, .head = offset, .affinity = affinity};
    }
    static TextSelection of(TextRange range) { return {.anchor = range.start, .head = range.end}; }

    TextRange range() const { return {std::min(anchor, head), std::max(anchor, head)}; }
    bool isEmpty() const { return anchor == head; }
    bool operator==(const TextSelection&) const = default;
};

} // namespace platform
