// SPDX-License-Identifier: MIT
#include "platform/foundation/GraphemeClusters.h"
#include "platform/foundation/NSScanner.h"
#include "platform/foundation/String.h"
#include "platform/foundation/StringFormat.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;

TEST(StringTests, Strings_are_equal_and_ordered_by_their_bytes_copied_from_the_caller)
{
    std::string source = "z";
    String string(source);
    source = "!";
    EXPECT_NE(String("a"), String("a\0"sv));
    EXPECT_LT(String("Z"), String("a"));
    EXPECT_LT(string, String("é"));
    EXPECT_DEATH(String("caf\xE9"), "not UTF-8");
}

TEST(StringTests, Adopted_bytes_live_as_long_as_the_last_copy)
{
    auto owner = std::make_shared<std::string>("adopted");
    std::weak_ptr<std::string> alive = owner;
    auto string = String::adopting(owner, *owner, nullptr);
    owner.reset();
    auto copy = std::exchange(string, String());
    EXPECT_EQ(copy.utf8(), "adopted");
    EXPECT_EQ(copy.utf8().data(), alive.lock()->data()) << "without a copy of the bytes";
    copy = String();
    EXPECT_TRUE(alive.expired());
}

namespace {

TEST(NSScannerTests, hexadecimalNumbersAreReadUpToWhatIsNone)
{
    struct Case {
        std::string_view name, text;
        std::optional<std::uint64_t> value;
        std::size_t location = 0;
    };
    constexpr Case cases[]{
        {"white space alone", " \n", {}},
        {"a prefix of nothing is a digit", "0xG", 0, 1},
        {"one prefix only", "0x0x1", 0, 3},
        {"space of every kind first", "\t\r\n\u00A0\u2003\u3000 7", 7, 13},
        {"wide digits are others", "\uFF17", {}},
        {"ill-formed", "\xE2\x80", {}},
        {"the largest", "FFFFFFFFFFFFFFFF", ~0ULL, 16},
        {"far more", "1000000000000000000000000000000001 2", ~0ULL, 34},
    };
    for (const auto& each : cases) {
        NSScanner scanner{std::string(each.text)};
        std::uint64_t value = 99;
        EXPECT_EQ(scanner.scanHexLongLong(&value), each.value.has_value()) << each.name;
        EXPECT_EQ(value, each.value.value_or(99)) << each.name;
        EXPECT_EQ(scanner.scanLocation(), each.location) << each.name;
    }
}

} // namespace

TEST(GraphemeClusters, A_character_is_what_a_person_counts)
{
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> characters;
    };
    const Case cases[] = {
        {"an empty text", "", {}},
        {"ASCII", "ab", {"a", "b"}},
        {"a line end of two characters", "a\r\nb\r", {"a", "\r\n", "b", "\r"}},
        {"an accent after its letter", "xe\u0301y", {"x", "e\u0301", "y"}},
        {"an accent with no letter", "\u0301a", {"\u0301", "a"}},
        {"flags side by side", "🇫🇷🇩🇪!", {"🇫🇷", "🇩🇪", "!"}},
        {"a family", "👨‍👩‍👧a", {"👨‍👩‍👧", "a"}},
        {"a skin tone", "👍🏽", {"👍🏽"}},
        {"a syllable of three letters", "각", {"각"}},
        {"points under a letter", "שָׁלוֹם", {"שָׁ", "ל", "וֹ", "ם"}},
        {"a zero byte", std::string("a\0b", 3), {"a", std::string(1, '\0'), "b"}},
    };
    for (auto& row : cases) {
        std::vector<std::string> found;
        for (GraphemeClusters walk(row.text); auto character = walk.next();)
            found.emplace_back(*character);
        EXPECT_EQ(found, row.characters) << row.name;
    }
}

TEST(GraphemeClusters, Long_texts_and_endless_characters_are_cut_nowhere_else)
{
    // Flags change their meaning when they are counted from the wrong one, wherever a window ends.
    std::string flags;
    for (auto count = 0; count < 5000; ++count)
        flags += "🇫🇷";
    std::size_t count = 0;
    for (GraphemeClusters walk(flags); auto character = walk.next(); ++count)
        ASSERT_EQ(*character, "🇫🇷") << count;
    EXPECT_EQ(count, 5000u);

    std::string heap = "a";
    for (auto mark = 0; mark < 100'000; ++mark)
        heap += "\u0301";
    GraphemeClusters walk(heap);
    EXPECT_EQ(walk.next()->size(), heap.size());
    EXPECT_FALSE(walk.next());
}

namespace {

struct Case {
    std::string_view format;
    std::vector<FormatArgument> arguments;
    std::string_view expected;
};

} // namespace

TEST(StringFormatTests, Conversions_write_what_printf_writes_and_any_value_as_text)
{
    const Case cases[] = {
        {"", {1}, ""},
        {"%@ and %s", {"ä", String("b")}, "ä and b"},
        {"%d %i %ld %lld %D", {1, -2, 3L, INT64_MIN, 5}, "1 -2 3 -9223372036854775808 5"},
        {"%u %lu %U", {7U, UINT64_MAX, 9}, "7 18446744073709551615 9"},
        {"%x %X %#x %o", {255, 255, 255, 8}, "ff FF 0xff 10"},
        {"%f %.2f %5.1f| %e %g %G",
         {1.5, 2.345, 3.25, 1500.0, 0.0001, 1e-10},
         "1.500000 2.35   3.2| 1.500000e+03 0.0001 1E-10"},
        {"%F %a", {std::numeric_limits<double>::infinity(), 1.0}, "INF 0x1p+0"},
        {"%c%c%C", {'A', 0x42, U'😀'}, "AB😀"},
        {"%5d|%-5d|%05d|%+d|% d|%.3d", {1, 2, 3, 4, 5, 6}, "    1|2    |00003|+4| 5|006"},
        {"%5@|%-4s|%.2@|%4.1s|", {"é", "b", "ñandú", "éa"}, "    é|b   |ña|   é|"},
        {"%*d|%-*d|%.*f", {4, 1, -4, 2, 1, 0.25}, "   1|2   |0.2"},
        {"%2$@ %1$@ %2$@", {"a", "b"}, "b a b"},
        {"%2$*1$d", {3, 7}, "  7"},
        {"100%% %d%%", {5}, "100% 5%"},
        {"%hhd %hd %qd %zu %td %jd", {1, 2, 3, 4, 5, 6}, "1 2 3 4 5 6"},
        {"%@ %@ %@ %@", {-1, 2.5, 'x', std::numeric_limits<unsigned char>::max()}, "-1 2.5 x 255"},
    };
    for (auto& [format, arguments, expected] : cases)
        EXPECT_EQ(stringWithFormat(format, arguments), expected) << format;
}

TEST(StringFormatTests, Arguments_that_do_not_fit_are_written_by_what_they_are)
{
    const char* absent = nullptr;
    const Case cases[] = {
        {"%d %@ %s", {}, "(null) (null) (null)"},
        {"%@|%s|%d", {nullptr, absent, absent}, "(null)|(null)|(null)"},
        {"%d", {"text"}, "text"},
        {"%5.1d|", {"text"}, "    t|"},
        {"%s", {42}, "42"},
        {"%d", {2.75}, "2.75"},
        {"%f", {3}, "3.000000"},
        {"%d", {UINT32_MAX}, "4294967295"}, // the value, not its bits
        {"%u %x", {-1, static_cast<std::int8_t>(-1)}, "4294967295 ff"},
        {"%d", {'A'}, "65"},
        {"%c%c", {-1, 0xD800}, "\uFFFD\uFFFD"},
        {"%*d", {"wide", 1}, "1"},
        {"%d", {1, 2, 3}, "1"},
        {"%9$@", {1}, "(null)"},
    };
    for (auto& [format, arguments, expected] : cases)
        EXPECT_EQ(stringWithFormat(format, arguments), expected) << format;
}

TEST(StringFormatTests, What_is_no_conversion_stays_and_takes_no_argument)
{
    for (std::string_view text :
         {"%", "50% ", "%n", "%y", "%0$d", "%-", "%5.", "%1$", "%*", "%ll", "%p", "%'"})
        EXPECT_EQ(stringWithFormat(std::string(text) + "|%d", std::vector<FormatArgument>{1}),
                  std::string(text) + "|1");
}

TEST(StringFormatTests, Hostile_counts_are_bounded)
{
    std::vector<FormatArgument> arguments{INT64_MIN, 1};
    EXPECT_EQ(stringWithFormat("%*d", arguments), "1" + std::string(999, ' '));
    EXPECT_EQ(stringWithFormat("%2$99999999999999999999d", arguments).size(), 1000u);
    EXPECT_EQ(stringWithFormat("%2$.99999999999999999999f", arguments).size(), 1002u);
    EXPECT_EQ(stringWithFormat("%99999999999999999999$d", arguments), "(null)");
}

} // namespace platform
