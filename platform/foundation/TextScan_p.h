// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextSurvey.h"

#include <cstddef>
#include <functional>

#include <sys/types.h>

namespace platform {

enum class TextScanKind {
    fill,   // bytes are only brought in
    survey, // the text is known to be well-formed UTF-8
    validateAndSurvey,
};

struct TextScanResult {
    int errorNumber = 0;      // of a piece that could not be filled; nothing else is told then
    bool isWellFormed = true; // when not, pieces may have been left out, and nothing else is told
    std::size_t size = 0;     // less than asked for when the end was met before
    TextSurvey survey;        // of that many bytes; empty for TextScanKind::fill
};

// Brings the bytes [begin, end) of the text into their place, and gives how many came, fewer only at the end
// of the text, or a negated error number. Called by several threads at once.
using FillPiece = std::function<ssize_t(std::size_t begin, std::size_t end)>;

// Walks `size` bytes at `text` in pieces, on several threads: each piece is filled (when there is a `fill`) and
// then looked at while it is in the cache. Borders between pieces may cut characters and line ends: the
// result is the same for every way to cut, and for any number of threads.
TextScanResult scanText(const char* text, std::size_t size, TextScanKind kind, const FillPiece& fill,
                        const TextScanOptions& options);

} // namespace platform
