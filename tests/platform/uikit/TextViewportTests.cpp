// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextViewport.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

struct Fixture {
    explicit Fixture(std::string text, CGSize size = {500, 300})
        : buffer(String(text))
        , viewport(buffer)
    {
        viewport.setStyle(monospaced());
        viewport.setInsets({8, 5, 8, 5});
        viewport.setSize(size);
    }
    Utf8Offset topLeft() const { return viewport.hit({0, 0.5}).offset; }
    // Where the fragments are, as the eye sees it.
    std::vector<std::pair<std::int64_t, double>> picture() const
    {
        std::vector<std::pair<std::int64_t, double>> lines;
        for (auto& visible : viewport.visible())
            lines.emplace_back(visible.shaped->fragment.range.start.value,
                               std::round(visible.origin.y * 100) / 100);
        return lines;
    }
    TextBuffer buffer;
    TextViewport viewport;
};

} // namespace

TEST(TextViewport, ShapesOnlyWhatIsSeenWhateverTheSize)
{
    for (auto& text : {subtitles(5'000'000), std::string(5'000'000, '\n'), std::string(5'000'000, 'x')}) {
        Fixture at(text);
        at.viewport.visible();
        auto rows = static_cast<std::int64_t>(300 / at.viewport.lineHeight()) + 2;
        EXPECT_LE(at.viewport.shapingCount(), rows);
        auto before = at.viewport.shapingCount();
        at.viewport.scrollToEnd();
        EXPECT_TRUE(at.viewport.isAtEnd());
        at.viewport.scrollToFraction(0.37);
        at.viewport.visible();
        EXPECT_LE(at.viewport.shapingCount() - before, 2 * rows + 2);
        EXPECT_NEAR(at.viewport.fraction(), 0.37, 0.01);
        before = at.viewport.shapingCount();
        at.viewport.setStyle(monospaced(20));
        at.viewport.visible();
        EXPECT_LT(at.viewport.shapingCount() - before, 40);
        EXPECT_LT(at.viewport.measuredPieces(), 20u);
    }
}

TEST(TextViewport, ShowsTheEndAboveTheBottomInsetAndATextThatFitsAtTheTop)
{
    for (auto& text : {subtitles(50'000), std::string(10'000, '\n'), repeated("long words ", 5000)}) {
        Fixture at(text);
        EXPECT_TRUE(at.viewport.scrollToEnd());
        EXPECT_FALSE(at.viewport.scrollToEnd());
        auto& last = at.viewport.visible().back();
        EXPECT_NEAR(last.origin.y + last.shaped->height(), 300 - 8, 0.01);
        EXPECT_EQ(at.viewport.fraction(), 1);
        EXPECT_EQ(at.viewport.scrollBy(50), 0);
    }
    for (std::string text : {"", "a\n", "one\ntwo"}) {
        Fixture at(text);
        EXPECT_EQ(std::pair(at.viewport.scrollBy(10), at.viewport.scrollBy(-10)), std::pair(0.0, 0.0));
        EXPECT_FALSE(at.viewport.scrollToEnd());
        EXPECT_EQ(at.viewport.visible().front().origin.y, 8);
    }
}

TEST(TextViewport, ScrollsByExactlyTheDistanceAndBack)
{
    Fixture at(subtitles(50'000) + repeated("و هذا سطر. 語語 ", 500));
    at.viewport.scrollBy(137.25);
    auto before = at.picture();
    for (double distance : {1.0, 17.5, 250.0, 600.0, 2000.0}) {
        EXPECT_NEAR(at.viewport.scrollBy(distance), distance, 0.01);
        EXPECT_NEAR(at.viewport.scrollBy(-distance), -distance, 0.01);
        if (distance <= 600) {
            EXPECT_EQ(at.picture(), before) << distance;
        }
    }
    at.viewport.scrollToStart();
    EXPECT_NEAR(at.viewport.scrollBy(30), 30, 0.01);
    EXPECT_NEAR(at.viewport.scrollBy(-100), -30, 0.01);
    EXPECT_TRUE(at.viewport.isAtStart());
    at.viewport.scrollToEnd();
    at.viewport.scrollBy(-30);
    EXPECT_NEAR(at.viewport.scrollBy(100), 30, 0.01);
}

TEST(TextViewport, MovesOneWayWhenTheScrollBarIsDraggedOneWay)
{
    Fixture at(subtitles(300'000) + repeated("some long line that wraps ", 20'000) + subtitles(300'000));
    Utf8Offset previous{-1};
    for (int part = 0; part <= 100; ++part) {
        at.viewport.scrollToFraction(part / 100.0);
        EXPECT_GE(at.topLeft(), previous) << part;
        previous = at.topLeft();
    }
    EXPECT_TRUE(at.viewport.isAtEnd());
}

TEST(TextViewport, KeepsTheTopLeftCharacterWhenWidthOrFontChange)
{
    Fixture at(
        repeated("A paragraph of words that has to be wrapped in some widths and not in others.\n", 2000));
    at.viewport.scrollToFraction(0.5);
    at.viewport.scrollBy(3);
    auto character = at.topLeft();
    auto before = at.picture();
    auto expectTheSameOnTop = [&] {
        auto row = at.viewport.caretRect(character);
        ASSERT_TRUE(row);
        EXPECT_LE(row->minY(), 0.01);
        EXPECT_GT(row->maxY(), 0);
    };
    for (CGFloat width : {400.0, 250.0, 90.0, 700.0, 500.0}) {
        SCOPED_TRACE(width);
        at.viewport.setSize({width, 300});
        expectTheSameOnTop();
    }
    EXPECT_EQ(at.picture(), before); // there and back again does not drift
    for (double size : {26.0, 8.0, 13.0}) {
        SCOPED_TRACE(size);
        at.viewport.setStyle(monospaced(size));
        expectTheSameOnTop();
    }
}

TEST(TextViewport, StaysWhereItIsWhenTextAboveIsEdited)
{
    Fixture at(subtitles(100'000));
    at.viewport.scrollToFraction(0.5);
    at.viewport.scrollBy(5);
    auto before = at.picture();
    auto edit = at.buffer.replace({{10}, {20}}, repeated("new\n", 50));
    at.viewport.handleEdit(edit.at, edit.removedSize, edit.insertedSize);
    auto after = at.picture();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
        EXPECT_EQ(after[i].first, before[i].first + 190);
        EXPECT_EQ(after[i].second, before[i].second);
    }
    edit = at.buffer.replace({{0}, at.buffer.end()}, "");
    at.viewport.handleEdit(edit.at, edit.removedSize, edit.insertedSize);
    EXPECT_TRUE(at.viewport.isAtStart() && at.viewport.isAtEnd());
}

TEST(TextViewport, RevealsACaretWithAsLittleMovementAsNeeded)
{
    Fixture at(repeated("line\n", 2000));
    EXPECT_FALSE(at.viewport.reveal({0}));
    auto firstHidden = at.viewport.visibleRange().end;
    EXPECT_TRUE(at.viewport.reveal(firstHidden));
    EXPECT_NEAR(at.viewport.caretRect(firstHidden)->maxY(), 300, 0.01);
    EXPECT_FALSE(at.viewport.reveal(firstHidden));
    EXPECT_TRUE(at.viewport.reveal({8000}));
    EXPECT_NEAR(at.viewport.caretRect({8000})->midY(), 150, 10); // far away: in the middle
    EXPECT_TRUE(at.viewport.reveal({0}));
    EXPECT_TRUE(at.viewport.isAtStart());
    EXPECT_TRUE(at.viewport.reveal(at.buffer.end()));
    EXPECT_NEAR(at.viewport.caretRect(at.buffer.end())->maxY(), 300 - 8, 0.01);
}

TEST(TextViewport, FindsTheCaretThatItHitsInEveryVisibleRow)
{
    Fixture at(
        repeated(
            "plain\nעברית and שלום more\nwrapped wrapped wrapped wrapped wrapped wrapped wrapped wrapped\n\n",
            4),
        {200, 600});
    for (auto& visible : at.viewport.visible()) {
        auto range = visible.shaped->fragment.textRange();
        for (auto offset = range.start; offset <= range.end; offset = at.buffer.nextCharacter(offset)) {
            auto caret = at.viewport.caretRect(offset);
            ASSERT_TRUE(caret);
            auto hit = at.viewport.hit({caret->midX(), caret->midY()});
            auto again = at.viewport.caretRect(hit.offset, hit.affinity);
            EXPECT_NEAR(again->midX(), caret->midX(), 0.6) << offset.value;
            if (offset == at.buffer.end())
                break;
        }
    }
}

TEST(TextViewport, ShowsSelectedLineEndsAndCoversEachSelectedRow)
{
    Fixture at("one\n\nthree");
    auto rects = at.viewport.selectionRects({{0}, at.buffer.end()});
    // The text and the end of the first line, the end of the empty one, the text of the last.
    ASSERT_EQ(rects.size(), 4u);
    EXPECT_NEAR(rects[1].minX(), rects[0].maxX(), 0.1);
    EXPECT_GT(rects[2].width(), 0);
    EXPECT_TRUE(at.viewport.selectionRects({{2}, {2}}).empty());
}

TEST(TextViewport, SetsRightToLeftLinesAtTheRightAndPartsOfOneLineAlike)
{
    Fixture at("abc\nאבג\n" + repeated("שלום ", 3000));
    EXPECT_LT(at.viewport.caretRect({0})->minX(), 10);
    EXPECT_GT(at.viewport.caretRect({4})->minX(), 480);
    for (std::optional fragment = fragmentAt(at.buffer, {20}); fragment;
         fragment = fragmentAfter(at.buffer, *fragment))
        EXPECT_TRUE(at.viewport.shapedAt(fragment->range.start)->layout.isRightToLeft());
    // A part that begins with Latin letters still is of a right-to-left line.
    Fixture mixed("א " + std::string(5000, 'x') + " " + std::string(5000, 'y'));
    EXPECT_TRUE(mixed.viewport.shapedAt(mixed.buffer.end())->layout.isRightToLeft());
}
