// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/TextBuffer.h"
#include "platform/uikit/text/TextSelection.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace platform {

// What can be taken back, step by step, and done again. A step is one or more edits in the order they were
// made: letters typed one after the other are one step, until a word or a line ends or the caret is moved.
// Keeps pieces of the text, not copies. Main thread only.
class UndoHistory {
public:
    enum class Kind { typing, deleting, other };

    struct Step {
        std::vector<TextEdit> edits;
        TextSelection before;
        TextSelection after;
        Kind kind = Kind::other;
    };

    // Forgets what was undone.
    void record(TextEdit edit, Kind kind, const TextSelection& before, const TextSelection& after);
    // The next edit begins a step of its own.
    void closeStep() { isOpen_ = false; }
    void clear();

    bool canUndo() const { return !done_.empty(); }
    bool canRedo() const { return !undone_.empty(); }
    // Moves one step between the two sides and returns it; the caller applies its edits, backwards and
    // reversed for undo. Requires: canUndo(), canRedo().
    const Step& undo();
    const Step& redo();

    static constexpr std::size_t stepLimit = 10'000; // older ones are forgotten

private:
    bool joinsLast(const TextEdit& edit, Kind kind) const;

    std::deque<Step> done_;
    std::vector<Step> undone_;
    bool isOpen_ = false;
};

} // namespace platform
