// SPDX-License-Identifier: MIT
#include "platform/foundation/DateComponentsFormatter.h"
#include "platform/foundation/DateFormatter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace platform {

namespace {

Calendar english(TimeZone zone)
{
    return Calendar(Calendar::Identifier::iso8601, Locale("en"), std::move(zone));
}

// UTC by a name whose distance is not known to be fixed: the whole date format is used.
Calendar unhurried()
{
    return english(*TimeZone::withIdentifier("UTC"));
}

} // namespace

TEST(DateFormatterTests, Clock_patterns_show_what_the_whole_date_format_shows)
{
    std::mt19937_64 random(1);
    for (const char* pattern :
         {"mm:ss", "HH:mm:ss", "ss.SS", "mm:ss.SS", "HH:mm:ss.SS", "H-m-s,S", "HHH٫SSSSSS"}) {
        DateFormatter quick(pattern, english(TimeZone::utc()));
        DateFormatter whole(pattern, unhurried());
        for (int i = 0; i < 8000; ++i) {
            auto bits = random();
            double values[] = {
                std::bit_cast<double>(bits),
                static_cast<double>(bits % 2'000'000) / 1000 - 1000,
                static_cast<double>(bits % 20'000'000) / 100 - 100'000,
                std::ldexp(static_cast<double>(static_cast<std::int64_t>(bits)),
                           -22 - static_cast<int>(bits % 70)),
            };
            // Milliseconds of later dates, which the whole format counts, are no doubles any more.
            constexpr double farthest = 9e12;
            for (double value : values)
                if (std::abs(value) < farthest) {
                    ASSERT_EQ(quick.string({value}), whole.string({value})) << pattern << " " << value;
                }
        }
    }
}

TEST(DateFormatterTests, Fractions_are_cut_from_the_decimal_that_was_meant)
{
    struct Case {
        double seconds;
        const char* shown;
    };
    constexpr Case cases[] = {
        {42.678, "42.6780000"},    {0.29, "00.2900000"},        {1.001, "01.0010000"},
        {0.1 + 0.2, "00.3000000"}, {59.99999999, "59.9999999"}, {-0.25, "59.7500000"},
        {-1e-10, "59.9999999"},    {5e-324, "00.0000000"},      {-5e-324, "59.9999999"},
    };
    for (const auto& [seconds, shown] : cases)
        for (const auto& calendar : {english(TimeZone::utc()), unhurried()})
            EXPECT_EQ(DateFormatter("ss.SSSSSSS", calendar).string({seconds}), shown) << seconds;
}

TEST(DateFormatterTests, Patterns_languages_and_zones_are_those_of_the_calendar)
{
    struct Case {
        const char* pattern;
        Calendar calendar;
        double seconds;
        const char* shown;
    };
    using enum Calendar::Identifier;
    auto berlin = *TimeZone::withIdentifier("Europe/Berlin");
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {"EEEE, d. MMMM y, HH:mm",
         {Calendar(gregorian, Locale("de_DE"), berlin)},
         1.72e9,
         "Mittwoch, 3. Juli 2024, 11:46"},
        {"d MMMM yyyy HH:mm:ss,SSSSS",
         {Calendar(gregorian, Locale("ar_EG"), berlin)},
         1.72e9 + .5,
         "٣ يوليو ٢٠٢٤ ١١:٤٦:٤٠,٥٠٠٠٠"},
        {"HH:mm", english(*TimeZone::withSecondsFromGMT(-5400)), 0, "22:30"},
        {"mm:sshSS", english(TimeZone::utc()), 3725.678, "02:05167"},
        {"mm:ss'SSS", english(TimeZone::utc()), 75.5, "01:15SSS"},
        {"ss''SSSS", english(TimeZone::utc()), 75.5, "15'5000"},
        {"ssTSS", english(TimeZone::utc()), 75.5, ""},
        {"HH:mm", english(TimeZone::utc()), infinity, "00:00"},
        {"HH:mm", english(TimeZone::utc()), std::numeric_limits<double>::quiet_NaN(), ""},
        {"", english(TimeZone::utc()), 0, ""},
    };
    for (const auto& [pattern, calendar, seconds, shown] : cases)
        EXPECT_EQ(DateFormatter(pattern, calendar).string({seconds}), shown) << pattern;
}

namespace {

using Style = DateComponentsFormatter::UnitsStyle;
using Zeros = DateComponentsFormatter::ZeroFormattingBehavior;
using Unit = NSCalendarUnit;

constexpr auto clockUnits = Unit::hour | Unit::minute | Unit::second;
constexpr double day = 86400;

std::string write(const char* locale, double seconds, NSCalendarUnit units, Style style,
                  Zeros zeros = Zeros::default_)
{
    DateComponentsFormatter formatter;
    formatter.setCalendar(Calendar(Calendar::Identifier::gregorian, Locale(locale), TimeZone::utc()));
    formatter.setAllowedUnits(units);
    formatter.setUnitsStyle(style);
    formatter.setZeroFormattingBehavior(zeros);
    return formatter.string(seconds).value_or("nothing");
}

} // namespace

TEST(DateComponentsFormatterTests, Styles_and_languages_have_their_own_words)
{
    struct Case {
        const char* locale;
        Style style;
        const char* text;
    };
    constexpr Case cases[] = {
        {"en", Style::positional, "1d 2:02:05"},
        {"en", Style::abbreviated, "1d 2h 2m 5s"},
        {"en", Style::short_, "1 day, 2 hr, 2 min, 5 sec"},
        {"en", Style::full, "1 day, 2 hours, 2 minutes, 5 seconds"},
        {"en", Style::spellOut, "one day, two hours, two minutes, five seconds"},
        {"en", Style::brief, "1day 2hr 2min 5sec"},
        {"de", Style::full, "1 Tag, 2 Stunden, 2 Minuten und 5 Sekunden"},
        {"de", Style::spellOut, "ein Tag, zwei Stunden, zwei Minuten und fünf Sekunden"},
        {"ru", Style::spellOut, "один день два часа две минуты пять секунд"},
        {"ar_EG", Style::full, "يوم، وساعتان، ودقيقتان، و٥ ثوان"},
        {"zh", Style::brief, "1天2小时2分钟5秒"},
    };
    for (const auto& [locale, style, text] : cases)
        EXPECT_EQ(write(locale, 93725, clockUnits | Unit::day, style), text);
    EXPECT_EQ(write("fi", 3725, clockUnits, Style::positional), "1.02.05");
    EXPECT_EQ(write("fr", 3600, clockUnits, Style::spellOut), "une\u00a0heure");
    EXPECT_EQ(write("ar", -60, clockUnits, Style::full), "\u061c-دقيقة") << "a word that holds its number";
}

TEST(DateComponentsFormatterTests, Zeros_stay_or_go_by_where_they_stand)
{
    struct Case {
        double seconds;
        Zeros zeros;
        const char* positional;
        const char* abbreviated;
    };
    constexpr Case cases[] = {
        {0, Zeros::none, "0:00:00", "0h 0m 0s"},
        {0, Zeros::default_, "0", "0s"},
        {0, Zeros::pad, "00:00:00", "00h 00m 00s"},
        {0, Zeros::dropTrailing, "0:00:00", "0h"},
        {65, Zeros::none, "0:01:05", "0h 1m 5s"},
        {65, Zeros::default_, "1:05", "1m 5s"},
        {65, Zeros::dropLeading | Zeros::pad, "01:05", "01m 05s"},
        {3600, Zeros::default_, "1:00:00", "1h"},
        {3600, Zeros::dropMiddle, "1:00:00", "1h 0m 0s"},
        {3605, Zeros::default_, "1:00:05", "1h 5s"},
        {3605, Zeros::dropTrailing, "1:00:05", "1h 0m 5s"},
        {-5, Zeros::none, "-0:00:05", "0h 0m -5s"},
        {-3605.9, Zeros::default_, "-1:00:05", "-1h 5s"},
        {-0.5, Zeros::default_, "0", "0s"},
        {9.2e18, Zeros::default_, "2555555555555555:33:20", "2,555,555,555,555,555h 33m 20s"},
    };
    for (const auto& [seconds, zeros, positional, abbreviated] : cases) {
        EXPECT_EQ(write("en", seconds, clockUnits, Style::positional, zeros), positional) << seconds;
        EXPECT_EQ(write("en", seconds, clockUnits, Style::abbreviated, zeros), abbreviated) << seconds;
    }
}

TEST(DateComponentsFormatterTests, Units_above_the_hour_are_counted_on_the_calendar)
{
    struct Case {
        double seconds;
        NSCalendarUnit units;
        const char* text;
    };
    constexpr Case cases[] = {
        {59 * day, Unit::month | Unit::day, "2 months"},
        {-61 * day, Unit::month | Unit::day, "-2 months"},
        {181 * day, Unit::quarter, "2 quarters"},
        {1000 * day, Unit::day, "1,000 days"},
        {364 * day, Unit::yearForWeekOfYear, "1 year"},
        {5e-9, Unit::nanosecond, "5 nanoseconds"},
        {1e9, Unit::none, "31 years, 8 months, 1 week, 1 day, 1 hour, 46 minutes, 40 seconds"},
    };
    for (const auto& [seconds, units, text] : cases)
        EXPECT_EQ(write("en", seconds, units, Style::full), text);
}

TEST(DateComponentsFormatterTests, What_cannot_be_written_gives_nothing)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (double seconds : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, 9.3e18})
        EXPECT_EQ(write("en", seconds, clockUnits, Style::full), "nothing") << seconds;
    EXPECT_EQ(write("en", 5e13, Unit::month, Style::full), "nothing");
    EXPECT_EQ(write("en", 1e10, Unit::nanosecond, Style::full), "nothing");
    for (auto unit : {Unit::era, Unit::weekday, Unit::weekdayOrdinal, Unit::calendar, Unit::timeZone})
        EXPECT_EQ(write("en", 5, unit, Style::full), "nothing");
    EXPECT_EQ(write("en", 5, Unit::hour | Unit::second, Style::positional), "nothing");
    EXPECT_EQ(write("en", 5, Unit::second | Unit::nanosecond, Style::positional), "nothing");
}

} // namespace platform
