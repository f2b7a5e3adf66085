// SPDX-License-Identifier: MIT
#include "platform/uikit/text/LineLayoutCache.h"
#include "platform/uikit/text/TextHeights.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

// The height that shaping every fragment gives.
double shapedHeight(const TextBuffer& buffer, const TextStyle& style, double width)
{
    LineLayoutCache cache(buffer);
    cache.setStyle(style, width);
    double height = 0;
    for (std::optional fragment = firstFragment(buffer); fragment;
         fragment = fragmentAfter(buffer, *fragment))
        height += cache.shape(*fragment)->height();
    return height;
}

} // namespace

TEST(TextHeights, AreWhatShapingGivesForPlainMonospacedText)
{
    auto style = monospaced();
    auto rowHeight = TextLayout("", style).size().height;
    auto column = style.font.columnWidth();
    const std::pair<std::string_view, std::string> cases[] = {
        {"empty", ""},
        {"a line end at the end", "abc\n"},
        {"only newlines", std::string(300, '\n')},
        {"only CR LF", repeated("\r\n", 100)},
        {"cues", subtitles(6000)},
        {"words that wrap", repeated("some words that have to be wrapped, others not at all\n", 40)},
        {"spaces where a row ends", repeated("0123456789 0123456789    0123456789\n", 10)},
        {"words wider than a row", repeated(std::string(95, 'w') + " end\n\n", 10)},
        {"tabs", repeated("a\tb\tc\n", 10)},
    };
    for (auto& [name, text] : cases) {
        for (int columns : {20, 33, 80}) {
            SCOPED_TRACE(std::string(name) + " in " + std::to_string(columns));
            auto width = columns * column + 0.5;
            TextBuffer buffer{String(text)};
            TextHeights heights(buffer);
            heights.setRows(columns, rowHeight);
            EXPECT_DOUBLE_EQ(heights.total(), shapedHeight(buffer, style, width));
        }
    }
}

TEST(TextHeights, FindThePlaceThatIsSoFarFromTheTop)
{
    for (auto& text : {subtitles(5'000), subtitles(2'000'000), std::string(3'000'000, '\n'),
                       repeated("words ", 300'000)}) {
        TextBuffer buffer{String(text)};
        TextHeights heights(buffer);
        heights.setRows(40, 10);
        auto previous = Utf8Offset{-1};
        for (int part = 0; part <= 50; ++part) {
            auto height = heights.total() * part / 50;
            auto place = heights.at(height);
            EXPECT_GE(place.fragment.range.start, previous) << part;
            previous = place.fragment.range.start;
            // Coming near a place measures it, which may move it a little.
            auto found = heights.above(place.fragment) + place.offset;
            EXPECT_NEAR(found, height, 0.01 * heights.total() + 40) << part << " of " << text.size();
        }
        EXPECT_EQ(heights.at(-5).fragment, firstFragment(buffer));
        EXPECT_EQ(heights.at(heights.total() + 5).fragment, lastFragment(buffer));
    }
}

TEST(TextHeights, AreCorrectedByWhatWasShaped)
{
    TextBuffer buffer{String(repeated("line\n", 1000))};
    TextHeights heights(buffer);
    heights.setRows(80, 10);
    auto before = heights.total();
    auto tenth = fragmentAt(buffer, {50});
    heights.correct(tenth, 25);
    EXPECT_DOUBLE_EQ(heights.total(), before + 15);
    EXPECT_DOUBLE_EQ(heights.above(tenth), 100);
    EXPECT_DOUBLE_EQ(heights.above(*fragmentAfter(buffer, tenth)), 125);
    heights.correct(tenth, 25);
    EXPECT_DOUBLE_EQ(heights.total(), before + 15);
    heights.correct(tenth, 10);
    EXPECT_DOUBLE_EQ(heights.total(), before);
}

TEST(TextHeights, FollowEdits)
{
    Dice dice(7);
    auto model = subtitles(60'000);
    TextBuffer buffer{String(model)};
    TextHeights heights(buffer);
    heights.setRows(20, 10);
    heights.total();
    for (int round = 0; round < 200; ++round) {
        auto at = dice.below(buffer.size());
        TextRange range{{at}, {std::min(buffer.size(), at + dice.below(30))}};
        auto edit = buffer.replace(range, round % 3 ? "typed" : "two lines\nof it\r\n");
        heights.handleEdit(range.start, edit.removedSize, edit.insertedSize);
        TextHeights fresh(buffer);
        fresh.setRows(20, 10);
        ASSERT_DOUBLE_EQ(heights.total(), fresh.total()) << round;
    }
}
