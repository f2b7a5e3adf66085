// SPDX-License-Identifier: MIT
#include "platform/graphics/TextColumns.h"

#include "platform/graphics/Utf8Decoder_p.h"

#include <QtCore/QChar>

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// East Asian Width W and F of Unicode 14, gaps of unassigned characters closed.
constexpr Range wideRanges[]{
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},
    {0x27B0, 0x27B0},   {0x27BF, 0x27BF},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},
    {0x2E80, 0x303E},   {0x3041, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA4C6},   {0xA960, 0xA97C},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAD9},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6B},   {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},   {0x16FE0, 0x1B2FB}, {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E},
    {0x1F191, 0x1F19A}, {0x1F200, 0x1F320}, {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393},
    {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E},
    {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567},
    {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5},
    {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC},
    {0x1F7E0, 0x1F7F0}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAF6},
    {0x20000, 0x3FFFD},
};

bool isWide(char32_t character)
{
    if (character < wideRanges[0].first)
        return false;
    auto after = std::upper_bound(std::begin(wideRanges), std::end(wideRanges), character,
                                  [](char32_t value, const Range& range) { return value < range.first; });
    return after != std::begin(wideRanges) && character <= std::prev(after)->last;
}

} // namespace

int columnsOf(char32_t character)
{
    if (character < 0x300)
        return character == 0xAD ? 0 : 1;
    // Most text outside of Latin, without a table: Greek, Cyrillic, Armenian; ideographs, Hangul.
    if ((character >= 0x370 && character < 0x483) || (character >= 0x48A && character < 0x590))
        return 1;
    if ((character >= 0x4E00 && character < 0xA000) || (character >= 0xAC00 && character < 0xD7A4))
        return 2;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return 0;
    case QChar::Other_Format:
        // Drawn as a sign, since a mark inside a text is a fault that its reader should see.
        return character == 0xFEFF ? 1 : 0;
    default:
        break;
    }
    // The vowels and finals of a decomposed Hangul syllable stand on its first consonant.
    if (character >= 0x1160 && character <= 0x11FF)
        return 0;
    return isWide(character) ? 2 : 1;
}

std::int64_t columnAfter(std::string_view text, std::int64_t start)
{
    auto column = start;
    std::size_t at = 0;
    while (at < text.size()) {
        auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '\t') {
            column += tabColumns - column % tabColumns;
            ++at;
        } else if (byte < 0x80) {
            ++column;
            ++at;
        } else {
            auto decoded = decodeCharacter(text, at);
            column += decoded.isWellFormed ? columnsOf(decoded.character) : 1;
            at += decoded.length;
        }
    }
    return column;
}

} // namespace platform
