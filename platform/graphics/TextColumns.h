// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace platform {

// Text counted in the columns of a monospaced font, without shaping it: exact where a font keeps to its
// grid, else the estimate that a height out of sight is computed from. Any thread.

inline constexpr std::int64_t tabColumns = 8;

// Whether every byte is a printable ASCII character (0x20...0x7E). Eight bytes a step.
inline bool isPlainASCII(std::string_view text)
{
    constexpr std::uint64_t ones = 0x0101010101010101, highs = 0x8080808080808080;
    std::size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + at, 8);
        auto below = (word - ones * 0x20) & ~word & highs;
        auto delete_ = word ^ (ones * 0x7F);
        if ((word & highs) | below | ((delete_ - ones) & ~delete_ & highs))
            return false;
    }
    for (; at < text.size(); ++at) {
        if (static_cast<unsigned char>(text[at] - 0x20) > 0x7E - 0x20)
            return false;
    }
    return true;
}

// The columns of one character: 0 for combining and invisible ones, 2 for the wide ones of East Asia and
// emoji, else 1. Control characters are drawn as a picture one column wide. Not for tabs.
int columnsOf(char32_t character);

// The column after `text` when it begins at column `start`: a tab goes to the next multiple of eight. Bytes
// that are not well-formed UTF-8 count 1 each. Text without line ends.
std::int64_t columnAfter(std::string_view text, std::int64_t start);

// The width of a whole line.
inline std::int64_t columns(std::string_view text)
{
    return isPlainASCII(text) ? static_cast<std::int64_t>(text.size()) : columnAfter(text, 0);
}

} // namespace platform
