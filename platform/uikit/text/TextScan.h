// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// Passes over the bytes of a text, many at a time. Any thread.
// A line end is "\n", "\r\n" or a lone "\r"; it is counted at its last byte.

// The first byte of the next line end at or after `from`; the text's size when there is none.
std::size_t findLineEnd(std::string_view text, std::size_t from);
// Line ends whose last byte is before `limit`. A "\r" at the very end of the text counts as one.
std::int64_t countLineEnds(std::string_view text, std::size_t limit = std::string_view::npos);
// The place after the `ordinal`th line end, counted from 1; npos when there are fewer.
std::size_t afterLineEnd(std::string_view text, std::int64_t ordinal);

bool isASCII(std::string_view text);
// UTF-16 units of the characters that begin in `text`; a cut sequence counts where it begins.
std::int64_t countUtf16Units(std::string_view text);
// The beginning of the character that the given UTF-16 unit belongs to; the text's size past the end.
std::size_t offsetOfUtf16Unit(std::string_view text, std::int64_t unit);

// Requires: `text` is well-formed UTF-8 but for cut sequences at its ends, which are left out.
std::u16string toUtf16(std::string_view text);

inline bool isUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace platform
