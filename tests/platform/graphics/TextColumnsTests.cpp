// SPDX-License-Identifier: MIT
#include "platform/graphics/TextColumns.h"

#include "tests/platform/graphics/NastyTexts.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(TextColumnsTests, textIsCountedInColumns)
{
    struct Case {
        const char* name;
        std::string text;
        std::int64_t columns;
    };
    const Case cases[]{
        {"nothing", "", 0},
        {"plain, shorter than a word of memory", "abc", 3},
        {"plain, longer", "00:00:01,000 --> 00:00:04,000", 29},
        {"a tab at the beginning", "\tx", 9},
        {"a tab goes to the next stop", "1234567\tx", 9},
        {"a tab at a stop goes on to the next one", "12345678\tx", 17},
        {"accents on letters", "e\u0301\u0302x", 2},
        {"letters with accents", "\u00E9\u00FC", 2},
        {"Cyrillic", "Привет", 6},
        {"East Asian", "漢字かな", 8},
        {"half width", "\uFF76", 1},
        {"Hangul whole", "한국", 4},
        {"Hangul in parts", "\u1112\u1161\u11AB", 2},
        {"emoji", "\U0001F600", 2},
        {"invisible formats", "a\u200Bb\u200Ec\u00ADd", 4},
        {"a mark of byte order has a sign", "\uFEFF", 1},
        {"controls have signs", std::string("\0\x01\x7F", 3), 3},
        {"malformed bytes count one each", "\xFF\xC3", 2},
        {"outside of any range", "\U0010FFFF", 1},
    };
    for (auto& row : cases)
        EXPECT_EQ(columns(row.text), row.columns) << row.name;
}

TEST(TextColumnsTests, countingInPiecesGivesTheSameColumns)
{
    for (auto& [name, text] : nastyTexts()) {
        auto whole = columnAfter(text, 0);
        for (std::size_t cut = 0; cut <= text.size(); ++cut) {
            if (cut < text.size() && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
                continue; // inside of a sequence
            auto before = columnAfter(text.substr(0, cut), 0);
            EXPECT_EQ(columnAfter(text.substr(cut), before), whole) << name << " at " << cut;
        }
    }
}

// The eight-byte step has its own arithmetic for every byte value at every place.
TEST(TextColumnsTests, anyByteThatIsNotPlainIsFoundAnywhere)
{
    for (std::size_t place = 0; place < 19; ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string text(19, 'x');
            text[place] = static_cast<char>(byte);
            EXPECT_EQ(isPlainASCII(text), byte >= 0x20 && byte < 0x7F) << byte << " at " << place;
        }
    }
    EXPECT_TRUE(isPlainASCII(""));
}

} // namespace
} // namespace platform
