// SPDX-License-Identifier: MIT
#include "platform/foundation/StringFormat.h"

#include <gtest/gtest.h>

namespace platform {

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
