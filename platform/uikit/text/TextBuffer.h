// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"
#include "platform/uikit/text/PieceTable.h"
#include "platform/uikit/text/TextOffsets.h"
#include "platform/uikit/text/TextStorage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// What was replaced by what, as pieces of the buffer that it came from: enough to do it again or to undo it,
// without a copy of the text.
struct TextEdit {
    Utf8Offset at;
    std::vector<TextPiece> removed;
    std::vector<TextPiece> inserted;
    std::int64_t removedSize = 0;
    std::int64_t insertedSize = 0;

    TextEdit reversed() const { return {at, inserted, removed, insertedSize, removedSize}; }
};

// The text of a text view: a piece table over the immutable original, which is never copied. Every question
// costs a bisection and a walk over one piece, whatever the size. Offsets are bytes of UTF-8; those handed in
// lie between characters unless a function says otherwise, and inside the text. Main thread only.
class TextBuffer {
public:
    TextBuffer() = default;
    // Shares `text`. Without the survey that reading a file leaves, walks over the bytes once.
    explicit TextBuffer(String text);

    Utf8Offset end() const { return pieces_.end(); }
    std::int64_t size() const { return pieces_.end().value; }
    bool isEmpty() const { return pieces_.size() == 0; }
    const PieceTable& pieces() const { return pieces_; }

    // --- Contents ---------------------------------------------------------------------------------
    // The whole text: shared as long as it is the original, else copied, once after each edit.
    String text() const;
    std::string text(TextRange range) const;
    // As a text of its own, which lives on whatever happens here: shared where it is a part of the original.
    String string(TextRange range) const;
    // Makes that text when it is called, however this buffer is edited or whether it is gone by then. Costs
    // nothing before but its pieces, 16 KiB each.
    std::function<String()> deferredString(TextRange range) const;
    // The bytes of `range` without a copy where they are neighbours in memory, else in `scratch`. Valid until
    // `scratch` changes.
    std::string_view view(TextRange range, std::string& scratch) const;
    // From `offset` to the end of its piece; empty at the end of the text.
    std::string_view chunkAt(Utf8Offset offset) const;
    char byteAt(Utf8Offset offset) const { return chunkAt(offset).front(); }

    // --- Lines ------------------------------------------------------------------------------------
    std::int64_t lineCount() const { return pieces_.lineEndsBefore(pieces_.size()) + 1; }
    Utf8Offset lineStart(LineNumber line) const;
    // With its line end. Requires: the line exists.
    TextRange lineRange(LineNumber line) const;
    // Inside of a "\r\n" is still the line that it ends.
    LineNumber lineContaining(Utf8Offset offset) const;
    // 0, 1 or 2 bytes: the line end that `range` ends with.
    int lineEndSize(TextRange range) const;

    // --- Characters and words, as a person counts them --------------------------------------------
    // "\r\n" is one character. Offsets may lie anywhere.
    Utf8Offset nextCharacter(Utf8Offset offset) const;
    Utf8Offset previousCharacter(Utf8Offset offset) const;
    Utf8Offset characterStart(Utf8Offset offset) const; // of the one that holds the byte
    Utf8Offset nextWordEnd(Utf8Offset offset) const;
    Utf8Offset previousWordStart(Utf8Offset offset) const;
    TextRange wordRange(Utf8Offset offset) const; // what a double click selects

    // --- UTF-16 units, as accessibility counts ----------------------------------------------------
    // Free for ASCII; else the first question counts all units before the place, and never again.
    std::int64_t utf16Size() const { return pieces_.utf16UnitsBefore(pieces_.size()); }
    Utf16Offset utf16Offset(Utf8Offset offset) const;
    // The second half of a pair counts as its beginning; past the end is the end.
    Utf8Offset utf8Offset(Utf16Offset offset) const;

    // --- Editing ----------------------------------------------------------------------------------
    // Requires: `text` is well-formed UTF-8.
    TextEdit replace(TextRange range, std::string_view text);
    TextEdit replaceSharing(TextRange range, const String& text); // without a copy of a large text
    // Does an edit of this buffer again; `edit.reversed()` undoes it. Requires: the text is as it was then.
    void apply(const TextEdit& edit);

private:
    struct Window;

    TextEdit splice(TextRange range, std::string_view kept);
    // The bytes where they are; nothing when they are not neighbours.
    std::optional<std::string_view> contiguous(TextRange range) const;
    bool isPartOfOriginal(std::string_view bytes) const;
    Window windowAround(Utf8Offset offset, std::string& scratch) const;

    std::shared_ptr<TextStorage> storage_ = std::make_shared<TextStorage>();
    String original_;
    PieceTable pieces_;
    mutable String flat_; // the whole text, when it had to be copied
    mutable bool isFlatValid_ = false;
};

} // namespace platform
