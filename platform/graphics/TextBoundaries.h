// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

// Where characters, as a person counts them, and words begin and end. Offsets are bytes of UTF-8 and are
// clamped to the text; one inside a sequence counts as its beginning. Only the neighbourhood of the offset
// is read, so the text may be of any length. Any thread.

struct ByteRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool isEmpty() const { return begin >= end; }
    std::size_t size() const { return end > begin ? end - begin : 0; }
    bool operator==(const ByteRange&) const = default;
};

// The end of the character after `offset`, and the beginning of the one before; the ends of the text stay.
// A character of more than 4 KiB of combining marks is cut there.
std::size_t nextGrapheme(std::string_view text, std::size_t offset);
std::size_t previousGrapheme(std::string_view text, std::size_t offset);
// The beginning of the character that `offset` is in, or `offset` itself when it is between two.
std::size_t graphemeStart(std::string_view text, std::size_t offset);

// What a double click at `offset` selects: the word, or the run of spaces, or the single sign. Words longer
// than 16 KiB are cut at 16 KiB from the offset.
ByteRange wordRange(std::string_view text, std::size_t offset);
// Where the caret goes by words: over spaces and signs to the end of the next word, and to the beginning of
// the previous one.
std::size_t nextWordEnd(std::string_view text, std::size_t offset);
std::size_t previousWordStart(std::string_view text, std::size_t offset);

} // namespace platform
