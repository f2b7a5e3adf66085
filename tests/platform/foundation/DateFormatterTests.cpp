// SPDX-License-Identifier: MIT
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

} // namespace platform
