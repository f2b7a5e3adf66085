// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextNavigation.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

struct Fixture {
    explicit Fixture(std::string text, CGFloat width = 800)
        : buffer(String(text))
        , viewport(buffer)
    {
        viewport.setStyle(monospaced());
        viewport.setSize({width, 200});
    }
    std::int64_t after(std::int64_t from, TextMovement movement) const
    {
        return moved(buffer, viewport, TextSelection::caret({from}), movement, Extend::no).head.value;
    }
    TextBuffer buffer;
    TextViewport viewport;
};

} // namespace

TEST(TextNavigation, GoesWhereTheKeySays)
{
    struct Case {
        std::string_view name, text;
        std::int64_t from;
        TextMovement movement;
        std::int64_t to;
    };
    using enum TextMovement;
    const Case cases[] = {
        {"right over a letter", "abc", 1, right, 2},
        {"right over a whole emoji", "a👨‍👩‍👧b", 1, right, 19},
        {"left over a whole emoji", "a👨‍👩‍👧b", 19, left, 1},
        {"left over a letter with marks", "e\xCC\x81\xCC\x82x", 5, left, 0},
        {"right at a line's end to the next line", "ab\r\ncd", 2, right, 4},
        {"left at a line's start to the line before", "ab\r\ncd", 4, left, 2},
        {"left at the text's start stays", "ab", 0, left, 0},
        {"right at the text's end stays", "ab", 2, right, 2},
        {"right in Hebrew goes back in the text", "שלום", 4, right, 2},
        {"left in Hebrew goes on in the text", "שלום", 4, left, 6},
        {"left at the end of a Hebrew line to the next line", "של\nab", 4, left, 5},
        {"a word to the right", "one two", 0, wordRight, 3},
        {"a word to the left", "one two", 7, wordLeft, 4},
        {"down keeps the column", "abcdef\nabcdef", 3, down, 10},
        {"up keeps the column", "abcdef\nabcdef", 10, up, 3},
        {"down into a shorter line", "abcdef\nab\nabcdef", 5, down, 9},
        {"up from the first line to the start", "abc\nd", 2, up, 0},
        {"down from the last line to the end", "a\nbcd", 3, down, 5},
        {"Home", "ab\ncdef", 5, rowStart, 3},
        {"End stops before CR LF", "abcd\r\nef", 1, rowEnd, 4},
        {"the end of the text", "abcd\r\nef", 1, documentEnd, 8},
        {"the start of the text", "abcd\r\nef", 7, documentStart, 0},
        {"the whole line's end", "abcd\r\nef", 1, lineEnd, 4},
        {"in an empty text", "", 0, down, 0},
    };
    for (auto& each : cases)
        EXPECT_EQ(Fixture(std::string(each.text)).after(each.from, each.movement), each.to) << each.name;
}

TEST(TextNavigation, RemembersTheColumnOverShorterLines)
{
    Fixture at("abcdef\nab\n\nabcdef");
    auto selection = TextSelection::caret({5});
    for (std::int64_t expected : {9, 10, 16}) {
        selection = moved(at.buffer, at.viewport, selection, TextMovement::down, Extend::no);
        EXPECT_EQ(selection.head.value, expected);
    }
}

TEST(TextNavigation, StopsAtTheEndsOfWrappedRows)
{
    Fixture at("wrapped wrapped wrapped wrapped wrapped wrapped", 150);
    auto end = moved(at.buffer, at.viewport, TextSelection::caret({2}), TextMovement::rowEnd, Extend::no);
    EXPECT_EQ(end.affinity, CaretAffinity::upstream);
    EXPECT_GT(end.head.value, 2);
    EXPECT_LT(end.head, at.buffer.end());
    auto start = moved(at.buffer, at.viewport, end, TextMovement::rowStart, Extend::no);
    EXPECT_EQ(start.head.value, 0);
    auto below = moved(at.buffer, at.viewport, start, TextMovement::down, Extend::no);
    EXPECT_EQ(below.head, end.head); // the next row begins where this one ends
}

TEST(TextNavigation, LeavesASelectionAtTheSideOfTheArrow)
{
    Fixture at("abcdef\nשלום");
    auto go = [&](TextRange from, TextMovement movement, Extend extend = Extend::no) {
        return moved(at.buffer, at.viewport, TextSelection::of(from), movement, extend).range();
    };
    EXPECT_EQ(go({{2}, {4}}, TextMovement::left), (TextRange{{2}, {2}}));
    EXPECT_EQ(go({{2}, {4}}, TextMovement::right), (TextRange{{4}, {4}}));
    EXPECT_EQ(go({{9}, {13}}, TextMovement::left), (TextRange{{13}, {13}}));
    EXPECT_EQ(go({{2}, {4}}, TextMovement::right, Extend::yes), (TextRange{{2}, {5}}));
}

TEST(TextNavigation, WalksAnOverlongLineOverAllCuts)
{
    Fixture at(repeated("語", 6000));
    auto selection = TextSelection::caret({4000 * 3});
    for (int step = 1; step <= 1800; ++step) {
        auto before = selection.head;
        auto isBack = step <= 600;
        selection = moved(at.buffer, at.viewport, selection,
                          isBack ? TextMovement::left : TextMovement::right, Extend::no);
        ASSERT_EQ(selection.head, before + (isBack ? -3 : 3)) << step;
    }
}

TEST(TextNavigation, SelectsWordsInsideOfLinesAndLinesWithTheirEnd)
{
    TextBuffer text{String("one two\r\n\r\nthree")};
    EXPECT_EQ(wordAround(text, {1}), (TextRange{{0}, {3}}));
    EXPECT_EQ(wordAround(text, {7}), (TextRange{{4}, {7}})); // behind the last word
    EXPECT_EQ(wordAround(text, {9}), (TextRange{{9}, {9}})); // an empty line
    EXPECT_EQ(wordAround(text, text.end()), (TextRange{{11}, {16}}));
    EXPECT_EQ(lineAround(text, {2}), (TextRange{{0}, {9}}));
    EXPECT_EQ(lineAround(text, text.end()), (TextRange{{11}, {16}}));
}
