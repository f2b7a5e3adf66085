// SPDX-License-Identifier: MIT
#include "platform/graphics/TextLayout.h"

#include "platform/graphics/TextColumns.h"
#include "tests/platform/graphics/NastyTexts.h"
#include "tests/platform/graphics/Painting.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

UIFont mono()
{
    return UIFont::monospacedSystemFont(17);
}

UIImage drawn(const TextLayout& layout, CGFloat scale = 1, CGPoint origin = {})
{
    return painted({300, 200}, scale, [&](CGContext& c) { layout.draw(c, origin, UIColor::black()); });
}

TEST(TextLayoutTests, everyTextLaysOutWithAllItsBytesInLines)
{
    for (auto lineBreak : {LineBreak::none, LineBreak::word, LineBreak::character, LineBreak::truncateTail}) {
        for (int maxLines : {0, 1, 2}) {
            forEachNastyText([&](std::string_view text) {
                TextLayout layout(text, {.font = mono(), .lineBreak = lineBreak, .maxLines = maxLines}, 35);
                auto& lines = layout.lines();
                ASSERT_FALSE(lines.empty());
                EXPECT_EQ(lines.front().bytes.begin, 0U);
                EXPECT_EQ(lines.back().bytes.end, text.size());
                EXPECT_TRUE(maxLines == 0 || lines.size() <= static_cast<std::size_t>(maxLines));
                for (std::size_t i = 1; i < lines.size(); ++i) {
                    EXPECT_EQ(lines[i].bytes.begin, lines[i - 1].bytes.end);
                    EXPECT_DOUBLE_EQ(lines[i].y, lines[i - 1].y + lines[i - 1].height);
                }
            });
        }
    }
}

TEST(TextLayoutTests, plainTextHasTheHeightOfItsLines)
{
    for (auto& font : {mono(), UIFont::systemFont(11), UIFont::systemFont(33, FontWeight::bold)}) {
        EXPECT_EQ(TextLayout("", {.font = font}).size(), (CGSize{0, font.lineHeight()}));
        EXPECT_EQ(TextLayout("Agjpq|", {.font = font}).size().height, font.lineHeight());
        TextLayout wrapped("aaaa bbbb cccc", {.font = font, .lineBreak = LineBreak::character},
                           TextLayout("aaaa ", {.font = font}).size().width + 0.5);
        EXPECT_EQ(wrapped.size().height, wrapped.lines().size() * font.lineHeight());
    }
}

// The height of a text out of sight is computed from this.
TEST(TextLayoutTests, monospacedTextTakesTheRowsThatItsColumnsTake)
{
    auto font = mono();
    auto spaced = repeated("WW  ijkl, -- ", 20) + std::string(50, ' ') + "x";
    for (auto& text : {std::string(200, 'W'), std::string(200, ' '), spaced, repeated("Привет ", 30)}) {
        auto columnCount = columns(text);
        for (int perLine : {1, 7, 40, 41}) {
            for (double spare : {0.0, 0.5, 0.99}) {
                TextLayout layout(text, {.font = font, .lineBreak = LineBreak::character},
                                  (perLine + spare) * font.columnWidth());
                EXPECT_EQ(layout.lines().size(),
                          static_cast<std::size_t>((columnCount + perLine - 1) / perLine))
                    << text.substr(0, 10) << " in lines of " << perLine << " and " << spare;
            }
        }
    }
}

TEST(TextLayoutTests, wordsStayWholeUnlessOneIsWiderThanTheLine)
{
    auto font = mono();
    TextLayout layout("one two abcdefghijklmnop", {.font = font}, 8.5 * font.columnWidth());
    std::vector<std::size_t> starts;
    for (auto& line : layout.lines())
        starts.push_back(line.bytes.begin);
    EXPECT_EQ(starts, (std::vector<std::size_t>{0, 8, 16}));
}

TEST(TextLayoutTests, tabsStopEveryEightColumns)
{
    auto font = mono();
    TextLayout layout("\ta\tb1234567\tc", {.font = font});
    auto column = [&](std::size_t offset) { return layout.caretRect(offset).minX() / font.columnWidth(); };
    EXPECT_NEAR(column(1), 8, 0.05);
    EXPECT_NEAR(column(3), 16, 0.05);
    EXPECT_NEAR(column(12), 32, 0.05) << "a tab at a stop goes on to the next one";
    TextLayout wide("\ta", {.font = font, .tabStop = 100});
    EXPECT_NEAR(wide.caretRect(1).minX(), 100, 0.05);
}

TEST(TextLayoutTests, alignmentPlacesTheLineInItsWidth)
{
    using enum TextAlignment;
    using enum BaseDirection;
    struct Case {
        const char* text;
        TextAlignment alignment;
        BaseDirection direction;
        double place; // of the free room to the left of the line
    };
    constexpr Case cases[]{
        {"abc", TextAlignment::left, automatic, 0},      {"abc", center, automatic, 0.5},
        {"abc", TextAlignment::right, automatic, 1},     {"abc שלום", natural, automatic, 0},
        {"123 שלום abc", natural, automatic, 1},         {"שלום", TextAlignment::left, automatic, 0},
        {"abc", natural, BaseDirection::rightToLeft, 1}, {"שלום", natural, BaseDirection::leftToRight, 0},
    };
    for (auto& row : cases) {
        for (double width : {280.0, unlimitedWidth}) {
            SCOPED_TRACE(row.text);
            TextLayout layout(row.text,
                              {.font = mono(), .alignment = row.alignment, .baseDirection = row.direction},
                              width);
            auto& line = layout.lines()[0];
            auto x = width == 280 ? (280 - line.width) * row.place : 0;
            EXPECT_NEAR(line.x, x, 0.1);
            auto ink = inkBox(drawn(layout));
            EXPECT_NEAR(ink.minX(), x, 4);
            EXPECT_NEAR(ink.maxX(), x + line.width, 4);
        }
    }
}

TEST(TextLayoutTests, whatHasNoInkOfItsOwnIsDrawnAsASign)
{
    using namespace std::string_literals;
    for (auto& text : {"\0"s, "\x01"s, "\n"s, "\r"s, "\x1B"s, "\x7F"s, "\xC2\x80"s, "\xC2\x85"s, "\u2028"s,
                       "\u2029"s, "\uFEFF"s, "\uFFFC"s, "\xFF"s}) {
        TextLayout layout(text, {.font = mono()});
        EXPECT_GT(inkAmount(drawn(layout)), 8) << static_cast<int>(static_cast<unsigned char>(text[0]));
        EXPECT_EQ(layout.lines().size(), 1U);
        EXPECT_NEAR(layout.size().width, mono().columnWidth(), 0.5);
    }
}

TEST(TextLayoutTests, inkStandsOnTheBaselineAndInsideItsLine)
{
    for (double scale : {1.0, 2.0}) {
        TextLayout layout("HHH", {.font = UIFont::systemFont(20)});
        auto ink = inkBox(drawn(layout, scale, {10, 30}));
        EXPECT_NEAR(ink.maxY() / scale, 30 + layout.firstBaseline(), 1);
        EXPECT_NEAR(ink.height() / scale, UIFont::systemFont(20).capHeight(), 1.5);
        EXPECT_GE(ink.minY() / scale, 30);
        EXPECT_GE(ink.minX() / scale, 10);
    }
}

TEST(TextLayoutTests, theStylesColorWinsOverTheOneGivenToDraw)
{
    for (bool hasOwn : {false, true}) {
        TextLayout layout("\u2588\u2588",
                          {.font = mono(), .color = hasOwn ? std::optional(UIColor::red()) : std::nullopt});
        auto image = painted({60, 30}, 1, [&](CGContext& c) { layout.draw(c, {}, UIColor::blue()); });
        EXPECT_TRUE(hasColor(image, 5, 10, hasOwn ? UIColor::red() : UIColor::blue()));
    }
}

TEST(TextLayoutTests, onlyLinesInsideTheClipArePaintedAndNoneOfThemIsLost)
{
    TextLayout layout(repeated("mmmmmmmmm ", 30), {.font = mono()}, 120);
    auto all = drawn(layout);
    auto part = painted({300, 200}, 1, [&](CGContext& c) {
        c.clip(CGRect::make(0, 60, 300, 50));
        layout.draw(c, {}, UIColor::black());
    });
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 120; ++x)
            ASSERT_EQ(alphaAt(part, x, y), y >= 60 && y < 110 ? alphaAt(all, x, y) : 0) << x << ", " << y;
    }
}

TEST(TextLayoutTests, aTruncatedTextFitsAndShowsAsMuchAsItCan)
{
    auto font = UIFont::systemFont(17);
    std::string text = "The quick brown fox jumps over the lazy dog";
    for (int maxLines : {1, 2, 3}) {
        for (double width = 60; width < 400; width += 17) {
            TextLayout layout(
                text, {.font = font, .lineBreak = LineBreak::truncateTail, .maxLines = maxLines}, width);
            EXPECT_LE(layout.lines().size(), static_cast<std::size_t>(maxLines));
            EXPECT_LE(layout.size().width, width + 0.1);
            TextLayout free(text, {.font = font}, width);
            EXPECT_EQ(layout.isTruncated(), free.lines().size() > static_cast<std::size_t>(maxLines))
                << width;
            if (maxLines == 1 && layout.isTruncated()) {
                EXPECT_GT(layout.size().width, width - 45) << "one more word, or letter, would have fitted";
            }
        }
    }
    TextLayout hebrew("שלום עולם שלום עולם",
                      {.font = font, .lineBreak = LineBreak::truncateTail, .maxLines = 1}, 80);
    EXPECT_TRUE(hebrew.isTruncated());
    EXPECT_LE(hebrew.size().width, 80.1);
    EXPECT_NEAR(hebrew.lines()[0].x, 80 - hebrew.lines()[0].width, 0.1);
}

TEST(TextLayoutTests, widthsThatAreNoNumbersAreUnlimited)
{
    for (double width : {0.0, -5.0, std::nan(""), unlimitedWidth, 1e300}) {
        TextLayout layout(repeated("word ", 50), {.font = mono()}, width);
        EXPECT_EQ(layout.lines().size(), 1U) << width;
        EXPECT_LT(layout.size().width, 3000) << width;
    }
    EXPECT_EQ(TextLayout("abcd", {.font = mono()}, 0.5).lines().size(), 4U)
        << "a line takes at least a character";
}

} // namespace
} // namespace platform
