// SPDX-License-Identifier: MIT
#include "platform/graphics/TextBoundaries.h"

#include "platform/graphics/Utf16Text_p.h"
#include "tests/platform/graphics/NastyTexts.h"

#include <gtest/gtest.h>

#include <QtCore/QTextBoundaryFinder>

namespace platform {
namespace {

// All boundaries, found with the whole text in view.
std::vector<std::size_t> allBoundaries(std::string_view text)
{
    Utf16Text whole(text);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, whole.string());
    std::vector<std::size_t> result;
    for (auto at = finder.position(); at >= 0; at = finder.toNextBoundary())
        result.push_back(whole.byteOf(at));
    return result;
}

void expectBoundaries(std::string_view text)
{
    auto expected = allBoundaries(text);
    for (std::size_t i = 0; i + 1 < expected.size(); ++i) {
        EXPECT_EQ(nextGrapheme(text, expected[i]), expected[i + 1]) << "after " << expected[i];
        EXPECT_EQ(previousGrapheme(text, expected[i + 1]), expected[i]) << "before " << expected[i + 1];
        for (auto inside = expected[i]; inside < expected[i + 1]; ++inside)
            EXPECT_EQ(graphemeStart(text, inside), expected[i]) << "inside at " << inside;
    }
    EXPECT_EQ(nextGrapheme(text, text.size()), text.size());
    EXPECT_EQ(nextGrapheme(text, text.size() + 9), text.size());
    EXPECT_EQ(previousGrapheme(text, 0), 0U);
    EXPECT_EQ(graphemeStart(text, text.size() + 9), text.size());
}

TEST(TextBoundariesTests, aWindowFindsTheBoundariesOfTheWholeText)
{
    forEachNastyText([](std::string_view text) { expectBoundaries(text); });
}

TEST(TextBoundariesTests, theWindowGrowsWhereCharactersAreLongOrEveryNeighbourJoins)
{
    for (auto& text : {"a" + repeated("\u0301", 700) + "b" + repeated("\u0302", 300),
                       "x" + repeated("\U0001F1E9\U0001F1EA", 100) + "\U0001F1EB",
                       repeated("\U0001F469\u200D", 60) + "\U0001F467" + repeated("한", 200),
                       repeated("\u0E01\u0E33", 100), repeated("漢字", 300)})
        expectBoundaries(text);
}

TEST(TextBoundariesTests, theNeighbourhoodIsEnoughInAnEndlessText)
{
    auto text = repeated("\u0301", 1'000'000);
    EXPECT_LE(nextGrapheme(text, 1'000'000) - 1'000'000, 4096U) << "a mark run is cut, not walked";
    EXPECT_GE(previousGrapheme(text, 1'000'000), 1'000'000U - 5000);
    auto word = repeated("a", 1'000'000);
    auto range = wordRange(word, 500'000);
    EXPECT_GE(range.size(), 16U * 1024);
    EXPECT_LE(range.size(), 33U * 1024);
}

TEST(TextBoundariesTests, aDoubleClickSelectsTheWordTheSpacesOrTheSign)
{
    struct Case {
        const char* name;
        std::string text;
        std::size_t offset;
        std::string selected;
    };
    const Case cases[]{
        {"a word's first letter", "one two", 4, "two"},
        {"a word's last letter", "one two", 2, "one"},
        {"the space between", "one two", 3, " "},
        {"several spaces", "one   two", 4, "   "},
        {"a sign", "one, two", 3, ","},
        {"past the end, the last word", "one two", 7, "two"},
        {"an apostrophe inside", "don't go", 1, "don't"},
        {"accents belong to the word", "cafe\u0301 x", 1, "cafe\u0301"},
        {"inside a sequence", "да нет", 1, "да"},
        {"Hebrew", "שלום עולם", 2, "שלום"},
        {"a number with a decimal point", "is 3.14 ok", 4, "3.14"},
        {"a word longer than the first window", repeated("b", 500) + " c", 250, repeated("b", 500)},
        {"nothing", "", 0, ""},
    };
    for (auto& row : cases) {
        auto range = wordRange(row.text, row.offset);
        EXPECT_EQ(row.text.substr(range.begin, range.size()), row.selected) << row.name;
    }
}

TEST(TextBoundariesTests, theCaretGoesByWordsOverSpacesAndSigns)
{
    auto text = "  one, two --> " + repeated("x", 300) + "!  ";
    std::vector<std::size_t> ends, starts;
    for (std::size_t at = 0; at < text.size();)
        ends.push_back(at = nextWordEnd(text, at));
    for (auto at = text.size(); at > 0;)
        starts.push_back(at = previousWordStart(text, at));
    EXPECT_EQ(ends, (std::vector<std::size_t>{5, 10, 315, 318}));
    EXPECT_EQ(starts, (std::vector<std::size_t>{15, 7, 2, 0}));
}

TEST(TextBoundariesTests, wordsNeverEndInsideOfASequenceAndAlwaysMakeProgress)
{
    forEachNastyText([](std::string_view text) {
        for (std::size_t at = 0; at <= text.size(); ++at) {
            auto range = wordRange(text, at);
            EXPECT_LE(range.begin, range.end);
            EXPECT_LE(range.end, text.size());
            EXPECT_TRUE(text.empty() || !range.isEmpty()) << at;
            EXPECT_TRUE(at >= text.size() || nextWordEnd(text, at) > at) << at;
            EXPECT_TRUE(at == 0 || previousWordStart(text, at) < at) << at;
        }
    });
}

TEST(Utf16TextTests, offsetsGoToUtf16AndBack)
{
    forEachNastyText([](std::string_view text) {
        Utf16Text map(text, [](char32_t character) { return character < 0x20 ? u'.' : u'\0'; });
        std::size_t last = 0;
        for (qsizetype unit = 0; unit <= map.string().size(); ++unit) {
            auto byte = map.byteOf(unit);
            EXPECT_GE(byte, last);
            last = byte;
            auto isSecondOfPair =
                unit > 0 && unit < map.string().size() && map.string()[unit].isLowSurrogate();
            EXPECT_EQ(map.utf16Of(byte), isSecondOfPair ? unit - 1 : unit);
        }
        EXPECT_EQ(last, text.size());
        EXPECT_EQ(map.utf16Of(text.size() + 5), map.string().size());
    });
}

TEST(Utf16TextTests, malformedBytesStandAloneAndWellFormedOnesAreExact)
{
    for (auto [bytes, text] : {std::pair("a\xE2\x82z", u"a\uFFFD\uFFFDz"),
                               {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
                               {"\xC0\xAF", u"\uFFFD\uFFFD"},
                               {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
                               {"\uFEFFa", u"\uFEFFa"}})
        EXPECT_EQ(Utf16Text(bytes).string(), QStringView(text));
}

} // namespace
} // namespace platform
