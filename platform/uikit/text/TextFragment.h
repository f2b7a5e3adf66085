// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/TextBuffer.h"

#include <optional>

namespace platform {

// What is shaped at once: a line, or a part of a line that is too long for that. An overlong line is cut near
// every multiple of `fragmentSize` bytes from its beginning, after a space if one is near, else between
// characters: where a cut falls is decided by the bytes around it alone, so any part of a line of any length
// is found without looking at the rest.
struct TextFragment {
    LineNumber line;
    TextRange range;     // with the line end
    int lineEndSize = 0; // bytes of `range` that are a line end
    bool beginsLine = true;
    bool endsLine = true;

    Utf8Offset textEnd() const { return range.end - lineEndSize; }
    TextRange textRange() const { return {range.start, textEnd()}; }
    bool operator==(const TextFragment&) const = default;
};

inline constexpr std::int64_t fragmentSize = 4096;
// No fragment is larger than this: the rest of a line is not cut when it is shorter than a quarter.
inline constexpr std::int64_t fragmentSizeLimit = fragmentSize + fragmentSize / 4 + 512;

TextFragment firstFragment(const TextBuffer& text);
TextFragment lastFragment(const TextBuffer& text);
// The one that holds the byte at `offset`; the last one at the end of the text.
TextFragment fragmentAt(const TextBuffer& text, Utf8Offset offset);
// Nothing past the ends of the text.
std::optional<TextFragment> fragmentAfter(const TextBuffer& text, const TextFragment& fragment);
std::optional<TextFragment> fragmentBefore(const TextBuffer& text, const TextFragment& fragment);

} // namespace platform
