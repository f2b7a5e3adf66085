// SPDX-License-Identifier: MIT
#include "platform/graphics/TextLayout.h"

#include "tests/platform/graphics/NastyTexts.h"
#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

UIFont mono()
{
    return UIFont::monospacedSystemFont(17);
}

double totalWidth(const std::vector<CGRect>& rects)
{
    double sum = 0;
    for (auto& rect : rects)
        sum += rect.width();
    return sum;
}

std::vector<std::size_t> boundariesOf(std::string_view text)
{
    std::vector<std::size_t> result{0};
    while (result.back() < text.size())
        result.push_back(nextGrapheme(text, result.back()));
    return result;
}

TEST(TextLayoutCaretTests, everyOffsetHasACaretAndOneInsideACharacterHasItsBeginnings)
{
    forEachNastyText([](std::string_view text) {
        TextLayout layout(text, {.font = mono()}, 60);
        for (std::size_t offset = 0; offset <= text.size() + 1; ++offset) {
            auto caret = layout.caretRect(offset);
            EXPECT_GE(caret.minX(), -0.1) << offset;
            EXPECT_GT(caret.height(), 0) << offset;
            auto& line = layout.lines()[layout.lineOf(std::min(offset, text.size()))];
            EXPECT_EQ(caret.minY(), line.y) << offset;
            // A control that ends a line is its own sign here, so a CR LF has a place inside.
            if (offset < text.size() && text.find('\r') == text.npos) {
                EXPECT_EQ(caret, layout.caretRect(graphemeStart(text, offset))) << offset;
            }
        }
        EXPECT_EQ(layout.caretRect(text.size() + 100), layout.caretRect(text.size()));
    });
}

// A click on a caret brings the caret back. Where directions meet, two offsets share a place on screen or
// one offset has two; then the click may give the neighbour, whose caret stands there too.
TEST(TextLayoutCaretTests, clickingWhereACaretStandsFindsAnOffsetWithThatCaret)
{
    for (double width : {60.0, 1000.0}) {
        forEachNastyText([&](std::string_view text) {
            TextLayout layout(text, {.font = mono(), .lineBreak = LineBreak::character}, width);
            for (auto offset : boundariesOf(text)) {
                auto caret = layout.caretRect(offset);
                auto hit = layout.hit({caret.minX(), caret.midY()});
                EXPECT_NEAR(layout.caretRect(hit.offset, hit.affinity).minX(), caret.minX(), 0.6) << offset;
                EXPECT_EQ(layout.caretRect(hit.offset, hit.affinity).minY(), caret.minY()) << offset;
                if (text.find('\r') == text.npos) {
                    EXPECT_EQ(graphemeStart(text, hit.offset), hit.offset);
                }
            }
        });
    }
}

TEST(TextLayoutCaretTests, inPlainTextAClickFindsTheNearestGap)
{
    auto font = mono();
    TextLayout layout("abcdef", {.font = font});
    for (auto [column, offset] : {std::pair(-3.0, 0U), {0.4, 0}, {0.6, 1}, {3.4, 3}, {99, 6}})
        EXPECT_EQ(layout.offsetAt({column * font.columnWidth(), 5}), offset) << column;
    EXPECT_EQ(layout.offsetAt({0, -1e6}), 0U);
    EXPECT_EQ(layout.offsetAt({1e9, 1e6}), 6U);
}

TEST(TextLayoutCaretTests, atALineBreakTheAffinitySaysOnWhichLineTheCaretStands)
{
    auto font = mono();
    TextLayout layout("aaaabbbb", {.font = font, .lineBreak = LineBreak::character}, 4 * font.columnWidth());
    ASSERT_EQ(layout.lines().size(), 2U);
    EXPECT_EQ(layout.caretRect(4).minX(), 0);
    EXPECT_EQ(layout.caretRect(4).minY(), layout.lines()[1].y);
    auto upstream = layout.caretRect(4, CaretAffinity::upstream);
    EXPECT_NEAR(upstream.minX(), 4 * font.columnWidth(), 0.1);
    EXPECT_EQ(upstream.minY(), 0);
    EXPECT_EQ(layout.hit({1000, 1}), (TextHit{4, CaretAffinity::upstream}));
    EXPECT_EQ(layout.hit({0, layout.lines()[1].y + 1}), (TextHit{4, CaretAffinity::downstream}));
}

TEST(TextLayoutCaretTests, theCharactersTileTheLineAndAWholeSelectionCoversIt)
{
    forEachNastyText([](std::string_view text) {
        for (auto direction : {BaseDirection::leftToRight, BaseDirection::rightToLeft}) {
            // Without a font for a script its syllables have no glyphs to be measured by.
            if (direction == BaseDirection::rightToLeft && text.find("\u0915") != text.npos)
                continue;
            TextLayout layout(text,
                              {.font = mono(), .baseDirection = direction, .lineBreak = LineBreak::none});
            auto rects = layout.selectionRects({0, text.size() + 10});
            auto box = CGRect::null();
            for (auto& rect : rects)
                box = box.unionWith(rect);
            EXPECT_EQ(rects.empty(), text.empty());
            auto before = 0.0;
            for (std::size_t at = 0, next; at < text.size(); at = next) {
                next = nextGrapheme(text, at);
                before += totalWidth(layout.selectionRects({at, next}));
                EXPECT_NEAR(totalWidth(layout.selectionRects({0, next})), before, 0.3) << "up to " << next;
            }
            if (text.empty() || layout.size().width == 0)
                continue;
            // Spaces at the end hang over the line's width; ink that leans out of its column counts there.
            EXPECT_GE(totalWidth(rects), layout.size().width - 1);
            EXPECT_NEAR(totalWidth(rects), box.width(), 0.3) << "no holes";
            EXPECT_EQ(box.height(), layout.size().height);
        }
    });
}

// The strongest proof that a selection is where its characters are drawn: take the text apart by ink.
TEST(TextLayoutCaretTests, aSelectionInMixedDirectionsLiesWhereItsCharactersAreDrawn)
{
    struct Case {
        const char* name;
        std::string text;
        std::string selected;
        std::vector<std::pair<double, double>> columns; // from left, in columns; a Hebrew letter is one here
    };
    // Full blocks among right-to-left marks stand for letters, so that each takes one column.
    const Case cases[]{
        {"left to right", "abcdef", "cd", {{2, 4}}},
        {"digits stay left to right in a right-to-left line", "\u200F12345", "23", {{1, 3}}},
        {"signs run right to left", "\u200F!?#", "!", {{2, 3}}},
        {"signs, all but the first", "\u200F!?#", "?#", {{0, 2}}},
        {"across the change of direction", "\u200F!?abc", "?ab", {{0, 2}, {3, 4}}},
        {"across the change, the other way", "ab\u202E123456\u202Ccd", "b\u202E12", {{1, 2}, {6, 8}}},
        {"the first character of a turned run", "ab\u202E123456\u202Ccd", "1", {{7, 8}}},
        {"the last character of a turned run", "ab\u202E123456\u202Ccd", "6", {{2, 3}}},
        {"a turned run of one character", "ab\u202E1\u202Ccd", "1", {{2, 3}}},
    };
    auto width = mono().columnWidth();
    for (auto& row : cases) {
        SCOPED_TRACE(row.name);
        TextLayout layout(row.text, {.font = mono(), .lineBreak = LineBreak::none});
        auto begin = row.text.find(row.selected);
        auto rects = layout.selectionRects({begin, begin + row.selected.size()});
        ASSERT_EQ(rects.size(), row.columns.size());
        for (std::size_t i = 0; i < rects.size(); ++i) {
            EXPECT_NEAR(rects[i].minX(), row.columns[i].first * width, 0.3);
            EXPECT_NEAR(rects[i].maxX(), row.columns[i].second * width, 0.3);
        }
    }
}

TEST(TextLayoutCaretTests, theVisualNeighboursLeadThroughTheWholeTextAndBack)
{
    for (std::string text : {"abc def", "שלום עולם", "abc שלום def", "e\u0301\u0302x\U0001F600"}) {
        TextLayout layout(text, {.font = mono()});
        std::size_t at = layout.isRightToLeft() ? text.size() : 0;
        std::size_t steps = 0;
        for (auto next = layout.offsetRightOf(at); next && steps < 100;
             next = layout.offsetRightOf(at), ++steps)
            at = *next;
        EXPECT_EQ(at, layout.isRightToLeft() ? 0 : text.size()) << text;
        EXPECT_EQ(steps, boundariesOf(text).size() - 1) << text;
        for (auto next = layout.offsetLeftOf(at); next && steps > 0; next = layout.offsetLeftOf(at), --steps)
            at = *next;
        EXPECT_EQ(at, layout.isRightToLeft() ? text.size() : 0) << text;
    }
}

TEST(TextLayoutCaretTests, offsetsBehindTheEllipsisHaveACaretAtIt)
{
    std::string text = "The quick brown fox jumps over the lazy dog";
    TextLayout layout(text, {.font = mono(), .lineBreak = LineBreak::truncateTail, .maxLines = 1}, 120);
    ASSERT_TRUE(layout.isTruncated());
    for (std::size_t offset = 0; offset <= text.size(); ++offset)
        EXPECT_LE(layout.caretRect(offset).minX(), 120.1) << offset;
    EXPECT_NEAR(layout.caretRect(text.size()).minX(), layout.size().width, 0.2);
    EXPECT_EQ(layout.offsetAt({119, 5}), text.size());
    EXPECT_NEAR(totalWidth(layout.selectionRects({0, text.size()})), layout.size().width, 0.2);
}

} // namespace
} // namespace platform
