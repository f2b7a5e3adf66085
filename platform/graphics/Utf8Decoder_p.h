// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

struct DecodedCharacter {
    char32_t character = 0xFFFD;
    std::size_t length = 1; // bytes
    bool isWellFormed = false;
};

// The character at `at`. A byte that begins no well-formed sequence stands alone as U+FFFD, so that every
// byte keeps an offset of its own. Requires: at < text.size().
inline DecodedCharacter decodeCharacter(std::string_view text, std::size_t at)
{
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
    auto lead = byte(0);
    if (lead < 0x80)
        return {lead, 1, true};
    auto length = lead >= 0xF0 ? 4U : lead >= 0xE0 ? 3U : 2U;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length)
        return {};
    char32_t character = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {};
        character = character << 6 | (byte(i) & 0x3FU);
    }
    constexpr char32_t smallest[]{0, 0, 0x80, 0x800, 0x10000};
    auto isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < smallest[length] || character > 0x10FFFF || isSurrogate)
        return {};
    return {character, length, true};
}

inline bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The beginning of the sequence that `offset` is inside of, or `offset`. Clamped to the text.
inline std::size_t characterStart(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return text.size();
    for (std::size_t back = 0; back < 4 && back <= offset; ++back) {
        if (isContinuation(text[offset - back]))
            continue;
        // Only a well-formed sequence covers its continuation bytes; stray ones stand alone.
        return decodeCharacter(text, offset - back).length > back ? offset - back : offset;
    }
    return offset;
}

} // namespace platform
