// SPDX-License-Identifier: MIT
// Files of twenty years ago, and files that are nearly Unicode.
#include "platform/foundation/LegacyDecoding_p.h"
#include "platform/foundation/LegacyGuess_p.h"
#include "platform/foundation/TextDecoding.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sys/xattr.h>

namespace platform {

using namespace std::string_view_literals;
using enum TextEncoding;
using tests::TemporaryDirectory;

namespace {

// One byte a character: the inverse of the encoding's own table.
std::string encodedIn(TextEncoding encoding, std::u16string_view text)
{
    std::string bytes;
    auto& half = *upperHalf(encoding);
    for (auto c : text) {
        auto found = std::ranges::find(half, c);
        bytes += c < 0x80 ? static_cast<char>(c) : static_cast<char>(128 + (found - half.begin()));
        EXPECT_TRUE(c < 0x80 || found != half.end());
    }
    return bytes;
}

std::string cues(std::string_view line)
{
    std::string text;
    for (int i = 1; i <= 12; ++i)
        text += std::to_string(i) + "\r\n00:00:01,000 --> 00:00:02,000\r\n" + std::string(line) + "\r\n\r\n";
    return text;
}

struct Sample {
    TextEncoding encoding;
    std::u16string_view line;
};
constexpr Sample samples[] = {
    {windows1252, u"Où est-il passé ? – Je ne sais pas, “peut-être” là-bas…"},
    {windows1250, u"Nie wiem, gdzie on jest. Chodźmy stąd, zanim wróci żona."},
    {iso8859_2, u"Příliš žluťoučký kůň úpěl ďábelské ódy, šel domů."},
    {windows1251, u"Я не знаю, где он. Пойдём отсюда, пока не поздно."},
    {koi8R, u"Я не знаю, где он. Пойдём отсюда, пока не поздно."},
    {koi8U, u"Я не знаю, де він. Ходімо звідси, поки її немає."},
    {ibm866, u"Я не знаю, где он. Пойдем отсюда, пока не поздно."},
    {windows1253, u"Δεν ξέρω πού είναι. Πάμε να φύγουμε από εδώ."},
    {windows1254, u"Nerede olduğunu bilmiyorum. Geç olmadan gidelim, şimdi ışığı söndür."},
    {windows1255, u"אני לא יודע איפה הוא. בוא נלך מכאן לפני שיהיה מאוחר."},
    {windows1256, u"لا أعرف أين هو. لنذهب من هنا قبل فوات الأوان."},
    {windows1257, u"Aš nežinau, kur jis yra. Eime iš čia, kol dar nevėlu, ąžuolas."},
    {windows874, u"ฉันไม่รู้ว่าเขาอยู่ที่ไหน ไปจากที่นี่กันเถอะ"},
};

} // namespace

TEST(OtherTextTests, Subtitles_in_the_encodings_of_old_are_read_as_they_were_written)
{
    TemporaryDirectory directory;
    for (auto& [encoding, line] : samples) {
        auto bytes = cues(encodedIn(encoding, line));
        std::string expected(legacyCapacity(bytes.size()), '\0');
        expected.resize(*decodeLegacy(encoding, bytes, expected.data()));
        auto text = readText(directory.write("a.srt", bytes));
        ASSERT_TRUE(text) << localizedName(encoding);
        EXPECT_EQ(text->text.utf8(), expected)
            << localizedName(encoding) << " as " << localizedName(text->encoding);
        EXPECT_EQ(text->evidence, TextEvidence::guess);
        ASSERT_FALSE(text->candidates.empty());
        EXPECT_EQ(text->candidates.front(), text->encoding);
    }
    const std::tuple<std::string_view, TextEncoding, std::string_view> others[] = {
        {"\x82\xB1\x82\xF1\x82\xC9\x82\xBF\x82\xCD\x81\x42\x8C\xB3\x8B\x43\x82\xC5\x82\xB7\x82\xA9", shiftJIS,
         "こんにちは。元気ですか"},
        {"\xA4\xB3\xA4\xF3\xA4\xCB\xA4\xC1\xA4\xCF\xA1\xA3\xB8\xB5\xB5\xA4\xA4\xC7\xA4\xB9\xA4\xAB", eucJP,
         "こんにちは。元気ですか"},
        {"\xC4\xE3\xBA\xC3\xA3\xAC\xCE\xD2\xB2\xBB\xD6\xAA\xB5\xC0\xCB\xFB\xD4\xDA\xC4\xC4\xC0\xEF\xA1\xA3",
         gb18030, "你好，我不知道他在哪里。"},
        {"\xBE\xC8\xB3\xE7\xC7\xCF\xBC\xBC\xBF\xE4, \xC1\xF6\xB1\xDD \xB0\xA1\xBE\xDF \xC7\xD8\xBF\xE4",
         eucKR, "안녕하세요, 지금 가야 해요"},
        {"\x1B$B$3$s$K$A$O\x1B(B", iso2022JP, "こんにちは"},
    };
    for (auto& [line, encoding, expected] : others) {
        auto text = readText(directory.write("a.srt", cues(line)));
        ASSERT_TRUE(text) << expected;
        EXPECT_EQ(text->encoding, encoding) << localizedName(text->encoding);
        EXPECT_EQ(text->text.utf8(), cues(expected));
    }
}

TEST(OtherTextTests, A_few_bad_bytes_in_UTF_8_are_marked_and_counted_and_the_rest_stays)
{
    TemporaryDirectory directory;
    auto good = cues("Où est-il passé ? – là-bas…");
    for (std::size_t place : {std::size_t(0), good.size() / 2, good.size()}) {
        auto at = good.find("\r\n", place == good.size() ? good.size() - 2 : place);
        auto bytes = good;
        bytes.insert(at, "\xE9");
        auto text = readText(directory.write("a.srt", bytes));
        ASSERT_TRUE(text);
        EXPECT_EQ(text->encoding, utf8);
        EXPECT_EQ(text->evidence, TextEvidence::nearlyWellFormed);
        EXPECT_EQ(text->replacements, 1u);
        auto expected = good;
        expected.insert(at, "\uFFFD");
        EXPECT_EQ(text->text.utf8(), expected);
        EXPECT_EQ(*text->text.survey(), surveyText(expected));
    }
}

TEST(OtherTextTests, A_chosen_encoding_is_kept_with_the_file_and_taken_only_when_it_fits)
{
    TemporaryDirectory directory;
    auto russian = cues(encodedIn(koi8R, samples[4].line));
    auto file = directory.write("a.srt", russian);
    ASSERT_TRUE(keepTextEncoding(file, windows1251));
    auto chosen = readText(file);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->encoding, windows1251);
    EXPECT_EQ(chosen->evidence, TextEvidence::chosen);
    ASSERT_TRUE(keepTextEncoding(file, std::nullopt));
    ASSERT_TRUE(keepTextEncoding(file, std::nullopt)); // there is nothing to take away, which is as well
    EXPECT_EQ(readText(file)->encoding, koi8R);
    ASSERT_EQ(::setxattr(file.path().c_str(), "user.charset", "shift_jis", 9, 0), 0);
    EXPECT_EQ(readText(file)->encoding, koi8R); // bytes that it cannot decode speak against it
    EXPECT_EQ(readText(file, ibm866)->encoding, ibm866);
    auto refused = readText(file, shiftJIS);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().bridged().code(),
              static_cast<long>(NSCocoaError::fileReadInapplicableStringEncoding));
    EXPECT_FALSE(keepTextEncoding(directory.url("missing.srt"), utf8));
}

TEST(OtherTextTests, The_language_in_a_file_s_name_decides_where_the_bytes_do_not)
{
    const std::pair<std::string_view, std::string_view> names[] = {
        {"film.ro.srt", "ro"}, {"film.pt-BR.srt", "pt"}, {"film.pol.srt", "pl"}, {"film_en.srt", "en"},
        {"film.1080.srt", ""}, {"film.srt", ""},         {".srt", ""},           {"", ""},
    };
    for (auto& [name, language] : names)
        EXPECT_EQ(languageOfFileName(name), language) << name;
    // One letter that two alphabets have in the same place.
    auto bytes = encodedIn(windows1250, u"1\n00:00:01,000 --> 00:00:02,000\nšo\n");
    EXPECT_EQ(guessLegacyEncodings(bytes, {{"cs", 0.2}}).front(), windows1250);
    EXPECT_EQ(guessLegacyEncodings(bytes, {{"et", 0.2}}).front(), windows1252);
}

TEST(OtherTextTests, Each_encoding_is_found_by_its_registered_name_and_cuts_do_no_harm)
{
    for (auto encoding : legacyTextEncodings())
        EXPECT_EQ(textEncodingNamed(charsetName(encoding)), encoding) << charsetName(encoding);
    EXPECT_EQ(textEncodingNamed("ISO-8859-1"), windows1252);
    EXPECT_EQ(textEncodingNamed("gb2312"), gb18030);
    EXPECT_EQ(textEncodingNamed("no-such-charset"), std::nullopt);
    for (auto encoding : legacyTextEncodings()) {
        for (std::string_view whole :
             {"\x82\xB1\x1B$B$3$s\xA4\xB3\x81\x30\x81\x30"sv, "\xFF\xFF\xFE\x80"sv}) {
            for (std::size_t size = 0; size <= whole.size(); ++size) {
                auto bytes = whole.substr(0, size);
                std::string room(legacyCapacity(size), '\0');
                auto decodedSize = decodeLegacy(encoding, bytes, room.data());
                EXPECT_TRUE(!decodedSize || *decodedSize <= room.size());
            }
        }
    }
}

} // namespace platform
