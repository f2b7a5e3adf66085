// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/TextSelection.h"
#include "platform/uikit/text/TextViewport.h"

namespace platform {

// Where a key takes the caret. Left and right are directions on screen, whatever the script.
enum class TextMovement {
    left,
    right,
    wordLeft,
    wordRight,
    up,
    down,
    pageUp,
    pageDown,
    rowStart,
    rowEnd,
    lineStart, // of the whole line, all its rows
    lineEnd,
    documentStart,
    documentEnd,
};
enum class Extend { no, yes }; // whether the other end of the selection stays

// What the selection becomes. A movement without extending that meets a selection goes to that side of it.
// Looks at the text around the caret only; shapes what it passes.
TextSelection moved(const TextBuffer& text, const TextViewport& viewport, const TextSelection& selection,
                    TextMovement movement, Extend extend);

// What a double and a triple click at `offset` select: a word inside of its line, and a line with its end.
TextRange wordAround(const TextBuffer& text, Utf8Offset offset);
TextRange lineAround(const TextBuffer& text, Utf8Offset offset);

} // namespace platform
