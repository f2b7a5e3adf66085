// SPDX-License-Identifier: MIT
#include "platform/foundation/TextDecoding.h"

#include "platform/foundation/UTF8.h"
#include "tests/platform/foundation/EncodedSamples.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;
using tests::allEncodings;
using tests::encoded;
using tests::scriptSamples;

namespace {

std::string bytesOf(const tests::ScriptSample& sample, TextEncoding encoding)
{
    return encoding == TextEncoding::utf8 ? std::string(sample.utf8) : encoded(sample.characters, encoding);
}

long code(const Result<DecodedText>& result)
{
    return result ? 0 : result.error().bridged().code();
}

constexpr long unknown = static_cast<long>(NSCocoaError::fileReadUnknownStringEncoding);
constexpr long inapplicable = static_cast<long>(NSCocoaError::fileReadInapplicableStringEncoding);

} // namespace

TEST(TextDecodingTests, Subtitles_of_all_scripts_come_out_the_same_from_every_encoding)
{
    for (auto& sample : scriptSamples) {
        for (auto encoding : allEncodings) {
            for (bool hasMark : {true, false}) {
                auto bytes = (hasMark ? tests::mark(encoding) : "") + bytesOf(sample, encoding);
                auto decoded = decodeText(bytes);
                ASSERT_TRUE(decoded) << sample.name << ' ' << localizedName(encoding) << ' ' << hasMark;
                EXPECT_EQ(decoded->text.utf8(), sample.utf8);
                EXPECT_EQ(decoded->encoding, encoding) << sample.name << localizedName(encoding);
                EXPECT_EQ(decoded->hadMark(), hasMark);
                ASSERT_TRUE(decoded->text.survey());
                EXPECT_EQ(*decoded->text.survey(), surveyText(sample.utf8));
            }
        }
    }
}

TEST(TextDecodingTests, Short_texts_and_strewn_zero_bytes_are_told_apart)
{
    using enum TextEncoding;
    const std::tuple<std::string_view, TextEncoding, std::string_view> cases[] = {
        {"", utf8, ""},
        {"a", utf8, "a"},
        {"\0"sv, utf8, "\0"sv},
        {"\0\0"sv, utf8, "\0\0"sv},
        {"\0\0\0\0"sv, utf8, "\0\0\0\0"sv},
        {"a\0"sv, utf16LittleEndian, "a"},
        {"\0a"sv, utf16BigEndian, "a"},
        {"a\0\0\0"sv, utf32LittleEndian, "a"},
        {"\0\0\0a"sv, utf32BigEndian, "a"},
        {"abc\0"sv, utf8, "abc\0"sv},
        {"a\0b"sv, utf8, "a\0b"sv},
        {"line one\0\nline two\0\n"sv, utf8, "line one\0\nline two\0\n"sv},
        {"padded with zeroes\0\0\0\0\0\0\0\0\0\0"sv, utf8, "padded with zeroes\0\0\0\0\0\0\0\0\0\0"sv},
        {"caf\xC3\xA9\0caf\xC3\xA9"sv, utf8, "café\0café"sv},
        {"\xEF\xBB\xBF", utf8, ""},
        {"\xEF\xBB\xBF\xEF\xBB\xBFx", utf8, "\uFEFFx"}, // one mark is a mark, the second is text
        {"\xFF\xFE", utf16LittleEndian, ""},
        {"\xFF\xFE\0\0"sv, utf32LittleEndian, ""},
        {"\0\0\xFE\xFF"sv, utf32BigEndian, ""},
        {"\xFF\xFE\x61\0\0\0"sv, utf16LittleEndian, "a\0"sv},
        {"\xEF\xBB\xBF\x61\0b\0"sv, utf8, "a\0b\0"sv}, // the mark speaks before the zeroes
        {"\x1B[31mred\x1B[0m", utf8, "\x1B[31mred\x1B[0m"},
        {"\xEF\xBF\xBE\xEF\xBF\xBF", utf8, "\uFFFE\uFFFF"}, // noncharacters are characters to UTF-8
    };
    for (auto& [bytes, encoding, text] : cases) {
        auto decoded = decodeText(bytes);
        ASSERT_TRUE(decoded) << testing::PrintToString(bytes);
        EXPECT_EQ(decoded->encoding, encoding) << testing::PrintToString(bytes);
        EXPECT_EQ(decoded->text.utf8(), text) << testing::PrintToString(bytes);
    }
}

TEST(TextDecodingTests, What_is_not_text_is_refused_with_the_code_that_says_why)
{
    const std::tuple<std::string_view, std::string_view, long> cases[] = {
        {"Latin-1", "caf\xE9\n", unknown},
        {"a fault in the last byte", "caf\xC3\xA9\xC3", unknown},
        {"UTF-8 of a surrogate", "a\xED\xA0\x80z", unknown},
        {"UTF-8 in a longer form", "\xC0\xAF", unknown},
        {"UTF-8 beyond Unicode", "\xF4\x90\x80\x80", unknown},
        {"an executable",
         "\x7F\x45LF\2\1\1\0\0\0\0\0\0\0\0\0\3\0>\0\1\0\0\0\xD0\x4F\0\0\0\0\0\0@\0\0\0\0\0\0\0\xE8\x3A"sv,
         unknown},
        {"a picture", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0\b\6\0\0\0\\r\xA8"sv, unknown},
        {"a fault behind a UTF-8 mark", "\xEF\xBB\xBF caf\xE9", inapplicable},
        {"UTF-16 cut in a unit", "\xFF\xFE\x61\0b"sv, inapplicable},
        {"UTF-16 that is one byte", "\xFE\xFF\0"sv, inapplicable},
        {"UTF-16 without a mark, cut in a unit", "l\0i\0n\0e\0\n"sv, inapplicable},
        {"a high surrogate at the end", "\xFF\xFE\x3D\xD8"sv, inapplicable},
        {"a high surrogate before a letter", "\xFF\xFE\x3D\xD8z\0"sv, inapplicable},
        {"a low surrogate alone", "\xFE\xFF\xDE\x00"sv, inapplicable},
        {"surrogates the wrong way round", "\xFE\xFF\xDE\x00\xD8\x3D"sv, inapplicable},
        {"two high surrogates", "\xFE\xFF\xD8\x3D\xD8\x3D"sv, inapplicable},
        {"a lone surrogate without a mark", "l\0i\0n\0e\0\x3D\xD8z\0\n\0"sv, inapplicable},
        {"UTF-32 cut in a unit", "\xFF\xFE\0\0a\0\0"sv, inapplicable},
        {"UTF-32 beyond Unicode", "\0\0\xFE\xFF\0\x11\0\0"sv, inapplicable},
        {"UTF-32 of a surrogate", "\0\0\xFE\xFF\0\0\xD8\0"sv, inapplicable},
        {"UTF-32 without a mark, cut in a unit", "l\0\0\0i\0\0\0n\0\0\0e\0\0\0\n\0"sv, inapplicable},
        {"UTF-32 without a mark, of a surrogate", "l\0\0\0i\0\0\0\0\xD8\0\0"sv, inapplicable},
    };
    for (auto& [name, bytes, expected] : cases)
        EXPECT_EQ(code(decodeText(bytes)), expected) << name;
    EXPECT_EQ(decodeText("\xFF").error().localizedDescription(),
              "The text couldn’t be read because the text encoding of its contents can’t be determined.");
    EXPECT_EQ(decodeText("\xFF\xFEz").error().bridged().localizedFailureReason(),
              "its contents are not valid in the text encoding Unicode (UTF-16LE) that they begin in");
}

TEST(TextDecodingTests, A_sample_cut_at_any_byte_gives_its_beginning_or_an_error)
{
    for (auto& sample : scriptSamples) {
        for (auto encoding : allEncodings) {
            for (auto& mark : {tests::mark(encoding), std::string()}) {
                auto bytes = mark + bytesOf(sample, encoding);
                for (std::size_t size = 0; size <= bytes.size(); ++size) {
                    // behind the same bytes lies other memory: nothing beyond the end may be read
                    std::vector<char> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
                    auto decoded = decodeText({cut.data(), cut.size()});
                    if (!decoded)
                        continue;
                    EXPECT_TRUE(isWellFormedUTF8(decoded->text.utf8()));
                    // past the first few units nothing may be taken for another encoding
                    if (decoded->encoding != encoding) {
                        EXPECT_LE(size, 8u) << sample.name << localizedName(encoding);
                    } else {
                        EXPECT_TRUE(sample.utf8.starts_with(decoded->text.utf8())) << sample.name << size;
                    }
                }
            }
        }
    }
}

TEST(TextDecodingTests, Faults_beyond_the_detected_beginning_are_found_and_a_character_on_its_end_is_none)
{
    for (std::string_view character : {"é", "€", "😀", "\xE9"}) {
        for (std::size_t before = 0; before <= character.size(); ++before) {
            auto text = std::string(textDetectionSample - before, 'a') + std::string(character) + "z";
            EXPECT_EQ(code(decodeText(text)), character == "\xE9" ? unknown : 0) << character << before;
        }
    }
    std::string wide = encoded(std::u32string(textDetectionSample, U'a'), TextEncoding::utf16LittleEndian);
    EXPECT_EQ(code(decodeText(wide)), 0);
    wide.back() = '\xDC';
    EXPECT_EQ(code(decodeText(wide)), inapplicable);
}

TEST(TextDecodingTests, Borders_between_pieces_change_nothing)
{
    std::string good = "a\r\né\r€\n😀\r\n\xF4\x8F\xBF\xBFz\r";
    const std::string bad[] = {"aaé\xC3",        "ab\xA9\xA9\xA9\xA9\xA9z", "\xE2\x82z€€",
                               "€€\xF0\x9F\x98", "a\xF0\x9F\x98\x80\x80",   "\xED\xA0\x80\xED\xB0\x80"};
    auto expected = surveyText(good, {.blockSize = 1, .pieceSize = 1, .threads = 1});
    for (std::size_t piece = 1; piece <= good.size() + 1; ++piece) {
        for (unsigned threads : {1u, 2u, 3u}) {
            for (std::size_t turn : {1u, 2u}) {
                TextScanOptions options{
                    .blockSize = 1, .pieceSize = piece, .piecesPerTurn = turn, .threads = threads};
                auto decoded = decodeText(good, options);
                ASSERT_TRUE(decoded) << piece;
                EXPECT_EQ(decoded->text.utf8(), good);
                EXPECT_EQ(*decoded->text.survey(), expected) << piece;
                for (auto& text : bad) {
                    // letters before it move the fault over every border
                    for (std::size_t shift = 0; shift < piece; ++shift)
                        EXPECT_EQ(code(decodeText("\xEF\xBB\xBF" + std::string(shift, 'x') + text, options)),
                                  inapplicable)
                            << piece << ' ' << shift << ' ' << testing::PrintToString(text);
                }
            }
        }
    }
}

} // namespace platform
