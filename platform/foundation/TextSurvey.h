// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform {

// How a text is cut when it is walked by several threads. The defaults are what measured best: a piece fits
// the second-level cache, and a thread takes pieces enough at a time that no two meet in one huge page.
struct TextScanOptions {
    std::size_t blockSize = 16 * 1024;  // bytes; what a survey has one entry for
    std::size_t pieceSize = 256 * 1024; // bytes; a multiple of blockSize
    std::size_t piecesPerTurn = 16;
    unsigned threads = 0; // 0: as many as pay for this size and this machine
};

// Where the lines of a text are, as far as one pass over its bytes can tell cheaply: enough to find any line
// by searching the blocks and then looking at one of them.
//
// A line ends with LF, CR LF or a lone CR. A line end counts in the block of its last byte, so a CR LF that
// is cut by the border of two blocks counts in the second. A character counts in the block of its first byte.
struct TextSurvey {
    struct Block {
        std::uint64_t lineEndsBefore = 0;   // in all earlier blocks
        std::uint64_t charactersBefore = 0; // code points in all earlier blocks
        std::uint32_t lineEnds = 0;
        std::uint32_t characters = 0;
        bool isASCII = true;

        bool operator==(const Block&) const = default;
    };

    std::size_t blockSize = 0; // bytes; the last block may be shorter
    std::size_t size = 0;      // bytes of the text
    std::uint64_t lineEnds = 0;
    std::uint64_t characters = 0;
    bool isASCII = true;
    std::vector<Block> blocks; // none for an empty text

    // A text has one more line than line ends; the last may be empty.
    std::uint64_t lineCount() const { return lineEnds + 1; }
    // The block with the line end that the line `line` (from 0) begins after; 0 for line 0.
    // Requires: `line` < lineCount().
    std::size_t blockWhereLineBegins(std::uint64_t line) const;

    bool operator==(const TextSurvey&) const = default;
};

// Surveys `text`, large ones on several threads. Requires: `text` is well-formed UTF-8.
TextSurvey surveyText(std::string_view text, const TextScanOptions& options = {});

// Where line `line` (from 0) begins, in bytes: reads one block. Requires: `survey` is of `text`, and
// `line` < survey.lineCount().
std::size_t lineStart(std::string_view text, const TextSurvey& survey, std::uint64_t line);
// The line (from 0) of the byte at `offset`; the bytes of a line end belong to the line they end. Reads one
// block. Requires: `survey` is of `text`, and `offset` <= text.size().
std::uint64_t lineAtOffset(std::string_view text, const TextSurvey& survey, std::size_t offset);

} // namespace platform
