// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A part of a terminal's screen.
struct TerminalPane {
    std::optional<int> width;  // columns, at least one; as wide as the lines are when absent
    std::optional<int> height; // rows, at least one; as many as there are when absent
    std::int64_t skip = 0;     // rows left out at the beginning
    bool operator==(const TerminalPane&) const = default;
};

struct TerminalRows {
    std::string text;      // every row with its line feed
    bool isFilled = false; // the pane's height is used up; there may be more
};

// `text` as the rows of a pane: lines that are wider go on in the next row, broken at spaces and between East Asian
// characters where there are any, else anywhere between characters. No row takes more columns than the pane has.
//
// The rows are harmless on any terminal: tabs become spaces; control characters, escape among them, the signs that
// stand for them, one column wide; what directs or hides text without a width of its own (direction overrides and
// embeddings, tags, byte-order marks) is left out; of combining marks at most eight stand on a character. In a pane of
// one column, what takes two shows as a question mark.
//
// Walks no more of the text than the rows need. `text` is UTF-8; bytes that are not well-formed show as U+FFFD. Any thread.
TerminalRows terminalRows(std::string_view text, const TerminalPane& pane);

} // namespace platform
