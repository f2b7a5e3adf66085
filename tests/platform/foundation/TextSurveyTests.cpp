// SPDX-License-Identifier: MIT
#include "platform/foundation/TextSurvey.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;

namespace {

// Line starts, found the plain way.
std::vector<std::size_t> lineStarts(std::string_view text)
{
    std::vector<std::size_t> starts = {0};
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && !text.substr(i + 1).starts_with('\n')))
            starts.push_back(i + 1);
    }
    return starts;
}

constexpr TextScanOptions cut(std::size_t block, std::size_t piece, unsigned threads)
{
    return {.blockSize = block, .pieceSize = piece, .piecesPerTurn = 1, .threads = threads};
}

} // namespace

TEST(TextSurveyTests, Lines_are_the_same_however_the_text_is_cut)
{
    for (auto text : {""sv, "\n"sv, "\r"sv, "\r\n"sv, "no line end"sv, "one\n"sv, "one\ntwo"sv, "\n\n\n"sv,
                      "\r\r\r"sv, "\r\n\r\n\r\n"sv, "\n\r\n\r"sv, "a\rb\nc\r\nd\r\r\n\n\re"sv,
                      "é\r\n€\r\n😀\r\n"sv, "nul \0\r\n\0\n"sv, "line\u2028separator is no line end\n"sv}) {
        auto starts = lineStarts(text);
        for (auto& options : {cut(1, 1, 1), cut(1, 2, 2), cut(2, 2, 1), cut(2, 6, 2), cut(3, 3, 2),
                              cut(5, 5, 1), cut(16384, 16384, 1)}) {
            auto survey = surveyText(text, options);
            ASSERT_EQ(survey.lineCount(), starts.size()) << testing::PrintToString(text) << options.blockSize;
            for (std::size_t line = 0; line < starts.size(); ++line)
                ASSERT_EQ(lineStart(text, survey, line), starts[line])
                    << testing::PrintToString(text) << options.blockSize;
            std::size_t line = 0;
            for (std::size_t offset = 0; offset <= text.size(); ++offset) {
                line += line + 1 < starts.size() && starts[line + 1] == offset;
                ASSERT_EQ(lineAtOffset(text, survey, offset), line)
                    << testing::PrintToString(text) << ' ' << offset;
            }
        }
    }
}

TEST(TextSurveyTests, Characters_and_ASCII_are_told_for_each_block)
{
    auto survey = surveyText("abcdé€😀z", cut(4, 4, 1)); // c3a9 e282ac f09f9880 7a behind four letters
    ASSERT_EQ(survey.blocks.size(), 4u);
    for (std::size_t block = 0, before = 0; block < 4; ++block) {
        constexpr std::size_t characters[] = {4, 2, 1, 1};
        EXPECT_EQ(survey.blocks[block].charactersBefore, before);
        EXPECT_EQ(survey.blocks[block].characters, characters[block]);
        EXPECT_EQ(survey.blocks[block].isASCII, block == 0) << block;
        before += characters[block];
    }
    EXPECT_EQ(survey.characters, 8u);
    EXPECT_FALSE(survey.isASCII);
}

TEST(TextSurveyTests, A_large_text_gives_the_same_on_one_thread_and_on_several)
{
    std::string text;
    for (int i = 0; text.size() < 3'000'000; ++i)
        text += "line " + std::to_string(i) + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? " é\n" : "\r");
    auto one = surveyText(text, {.threads = 1});
    EXPECT_EQ(one, surveyText(text, {.piecesPerTurn = 1, .threads = 4}));
    EXPECT_EQ(one, surveyText(text));
    auto starts = lineStarts(text);
    ASSERT_EQ(one.lineCount(), starts.size());
    for (std::size_t line = 0; line < starts.size(); line += 997) {
        EXPECT_EQ(lineStart(text, one, line), starts[line]);
        EXPECT_EQ(lineAtOffset(text, one, starts[line]), line);
    }
}

TEST(TextSurveyDeathTest, Lines_and_options_that_cannot_be_stop_the_program)
{
    auto survey = surveyText("a\nb");
    EXPECT_DEATH(lineStart("a\nb", survey, 2), "fewer lines");
    EXPECT_DEATH(lineAtOffset("a\nb", survey, 4), "beyond the text");
    EXPECT_DEATH(surveyText("a", {.blockSize = 2, .pieceSize = 3}), "not a multiple");
    EXPECT_DEATH(surveyText("a", {.blockSize = 0}), "at least 1");
}

} // namespace platform
