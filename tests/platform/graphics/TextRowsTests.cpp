// SPDX-License-Identifier: MIT
#include "platform/graphics/TextRows.h"

#include "platform/graphics/TextColumns.h"
#include "tests/platform/graphics/NastyTexts.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(TextRowsTests, linesGoOnInTheNextRowWhereTheyMayBeBroken)
{
    struct Case {
        const char* name;
        std::string text;
        TerminalPane pane;
        std::string rows;
    };
    const Case cases[]{
        {"nothing", "", {.width = 9}, ""},
        {"every kind of line end", "a\nb\r\nc\rd\n\n", {.width = 9}, "a\nb\nc\nd\n\n"},
        {"no line end at the end", "a\nb", {.width = 9}, "a\nb\n"},
        {"as wide as the pane", "12345\n", {.width = 5}, "12345\n"},
        {"between words", "one two three", {.width = 8}, "one two\nthree\n"},
        {"the space of the break is gone", "one two", {.width = 3}, "one\ntwo\n"},
        {"behind hyphens", "well-known", {.width = 7}, "well-\nknown\n"},
        {"inside a long word", "abcdefgh", {.width = 3}, "abc\ndef\ngh\n"},
        {"between wide characters, never inside", "漢字かな", {.width = 5}, "漢字\nかな\n"},
        {"what moves leaves too little room", "-abcdef。", {.width = 7}, "-\nabcdef\n。\n"},
        {"closing marks stay with what they close", "漢字。かな", {.width = 4}, "漢\n字。\nかな\n"},
        {"wide ones in a pane of one column", "漢a", {.width = 1}, "?\na\n"},
        {"marks take no room", "e\u0301e\u0301e\u0301", {.width = 2}, "e\u0301e\u0301\ne\u0301\n"},
        {"marks behind a wide one stay with it", "が\u3099が", {.width = 2}, "が\u3099\nが\n"},
        {"a mark alone gets a place", "\u0301x", {.width = 9}, " \u0301x\n"},
        {"tabs", "a\tb\tc", {.width = 12}, "a       b\nc\n"},
        {"height", "a\nb\nc\n", {.width = 9, .height = 2}, "a\nb\n"},
        {"rows are skipped, not lines", "abcd\ne\nf\n", {.width = 2, .height = 2, .skip = 1}, "cd\ne\n"},
        {"more skipped than there is", "a\n", {.skip = 7}, ""},
        {"no width", "a long line stays", {.height = 1}, "a long line stays\n"},
    };
    for (auto& each : cases) {
        auto rows = terminalRows(each.text, each.pane);
        EXPECT_EQ(rows.text, each.rows) << each.name;
        bool isFull = each.pane.height && std::ranges::count(rows.text, '\n') == *each.pane.height;
        EXPECT_EQ(rows.isFilled, isFull) << each.name;
    }
}

TEST(TextRowsTests, nothingInARowCanDriveTheTerminal)
{
    const std::pair<std::string, std::string> cases[]{
        {"\x1B]0;title\x07", "␛]0;title␇\n"},
        {std::string("\0\b\x7F", 3), "␀␈␡\n"},
        {"\u009B31m\u0085", "\uFFFD31m\uFFFD\n"},
        {"a\u2028b\u2029c", "a b c\n"},
        {"\uFEFFa\u202Eb\u2066c\u00ADd\U000E0041", "abcd\n"},
        {"\xFF\xC3z", "\uFFFD\uFFFDz\n"},
        {"می\u200Cخواهم\u200F!", "می\u200Cخواهم\u200F!\n"}, // joiners and marks are needed
    };
    for (auto& [text, rows] : cases)
        EXPECT_EQ(terminalRows(text, {.width = 40}).text, rows);
    std::string many = "e";
    for (int i = 0; i < 10000; ++i)
        many += "\u0301";
    EXPECT_LT(terminalRows(many, {.width = 5}).text.size(), 20u);
}

TEST(TextRowsTests, noRowIsWiderThanItsPaneWhateverTheText)
{
    for (auto& [name, text] : nastyTexts()) {
        for (int width : {1, 2, 3, 7, 40}) {
            std::string_view rest;
            auto rows = terminalRows(text, {.width = width}).text;
            for (rest = rows; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
                auto row = rest.substr(0, rest.find('\n'));
                EXPECT_LE(columns(row), width) << name;
                EXPECT_EQ(std::ranges::count_if(row, [](unsigned char c) { return c < 0x20; }), 0);
            }
        }
    }
}

} // namespace
} // namespace platform
