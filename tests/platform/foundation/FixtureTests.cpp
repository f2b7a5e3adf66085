// SPDX-License-Identifier: MIT
// The sample files, each named for its symptom: what they are, and that no part of them does harm.
#include "platform/foundation/String.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/UTF8.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace platform {

using namespace std::string_view_literals;

namespace {

const std::filesystem::path fixtures = ZELK_SOURCE_DIR "/tests/fixtures/text";

struct Case {
    std::string_view file;
    std::optional<TextEncoding> encoding; // nothing: refused
    std::string_view text;                // the third line
    std::uint64_t lines = 5;
};

constexpr Case cases[] = {
    {"utf8-plain.srt", TextEncoding::utf8, "She stayed – “of course”."},
    {"utf8-mark-crlf.srt", TextEncoding::utf8, "Où est-il ?\r"},
    {"utf8-lone-carriage-returns.srt", TextEncoding::utf8, "old Mac"},
    {"utf8-zero-bytes-strewn.srt", TextEncoding::utf8, "a\0b\0\0c"sv},
    {"utf16le-mark.srt", TextEncoding::utf16LittleEndian, "Никто 😀"},
    {"utf16le-no-mark-cyrillic.srt", TextEncoding::utf16LittleEndian, "ПОЧЕМУ ОНА ОСТАЛАСЬ"},
    {"utf16be-no-mark.srt", TextEncoding::utf16BigEndian, "彼女は残った"},
    {"utf32le-mark.srt", TextEncoding::utf32LittleEndian, "e\u0301 👩‍👧"},
    {"utf32be-no-mark.srt", TextEncoding::utf32BigEndian, "Hello"},
    {"utf8-last-byte-missing.srt", TextEncoding::utf8, "Fin �", 3},
    {"utf16le-odd-size.srt", std::nullopt, ""},
    {"utf16be-lone-surrogate.srt", std::nullopt, ""},
    {"utf32le-beyond-unicode.srt", std::nullopt, ""},
    {"latin1-accents.srt", TextEncoding::windows1252, "Où est-il passé ?"},
    {"binary-zip-header.srt", std::nullopt, ""},
};

} // namespace

TEST(FixtureTests, Each_sample_is_read_or_refused_as_its_name_says)
{
    for (auto& [file, encoding, third, lines] : cases) {
        auto read = readText(URL::fileURL((fixtures / file).string()));
        ASSERT_EQ(read.has_value(), encoding.has_value()) << file;
        if (!read)
            continue;
        EXPECT_EQ(read->encoding, *encoding) << file;
        auto text = read->text.utf8();
        auto& survey = *read->text.survey();
        ASSERT_EQ(survey.lineCount(), lines) << file;
        auto begin = lineStart(text, survey, 2);
        auto end = lines > 3 ? lineStart(text, survey, 3) - 1 : text.size();
        EXPECT_EQ(text.substr(begin, end - begin), third) << file;
    }
}

TEST(FixtureTests, No_sample_is_left_out_and_none_does_harm_cut_at_any_byte)
{
    std::size_t count = 0;
    for (auto& entry : std::filesystem::directory_iterator(fixtures)) {
        ++count;
        std::ifstream stream(entry.path(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(stream)), {});
        for (std::size_t size = 0; size <= bytes.size(); ++size) {
            for (auto part :
                 {std::string_view(bytes).substr(0, size), std::string_view(bytes).substr(size)}) {
                auto decoded = decodeText(part);
                EXPECT_TRUE(!decoded || isWellFormedUTF8(decoded->text.utf8()))
                    << entry.path().filename() << size;
            }
        }
    }
    EXPECT_EQ(count, std::size(cases));
}

} // namespace platform
