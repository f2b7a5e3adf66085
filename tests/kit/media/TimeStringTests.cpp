// SPDX-License-Identifier: MIT
#include "kit/media/frameDurations.h"
#include "kit/media/highResolution.h"
#include "kit/media/positionalString.h"
#include "kit/media/toTimeString.h"
#include "kit/media/unitTitle.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zelk {

namespace {

using Style = platform::DateComponentsFormatter::UnitsStyle;
using Unit = platform::NSCalendarUnit;
using platform::CMTime;

constexpr auto milliseconds = Resolution::milliseconds;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

platform::Calendar calendar(const char* locale)
{
    return platform::Calendar(platform::Calendar::Identifier::gregorian, platform::Locale(locale),
                              platform::TimeZone::utc());
}

} // namespace

TEST(TimeStringTests, A_position_is_laid_out_by_the_reference_time_and_wraps_as_a_time_of_day)
{
    struct Case {
        double seconds;
        PositionalStringOptions options;
        const char* shown;
    };
    const Case cases[] = {
        {75.3, {}, "01:15"},
        {59.999, {}, "00:59"},
        {3599.99, {}, "59:59"},
        {3600, {}, "01:00:00"},
        {3725.5, {}, "01:02:05"},
        {5, {.maxDisplayedTime = 4000}, "00:00:05"},
        {4000, {.maxDisplayedTime = 100}, "06:40"},
        {90000, {}, "01:00:00"},
        {86400, {}, "00:00:00"},
        {-30, {}, "59:30"},
        {-3600, {}, "23:00:00"},
        {-3599.5, {}, "00:00"},
        {5, {.millisecondsSeparator = "h", .millisecondsCharCount = -1}, "00:05"},
        {42.678, {.resolution = milliseconds}, "42.67"},
        {59.9, {.resolution = milliseconds}, "59.90"},
        {60, {.resolution = milliseconds}, "01:00.00"},
        {0.29, {.resolution = milliseconds}, "00.29"},
        {-0.25, {.resolution = milliseconds}, "59.75"},
        {5.5, {milliseconds, 90}, "00:05.50"},
        {3725.5, {.resolution = milliseconds}, "01:02:05.50"},
        {75.25, {milliseconds, {}, ",", 3}, "01:15,250"},
        {1.001, {milliseconds, {}, ".", 3}, "01.001"},
        {42.5, {milliseconds, {}, ".", 0}, "42."},
        {3725.5, {milliseconds, {}, "h", 1}, "01:02:0515"},
        {75.5, {milliseconds, {}, "'", 2}, "01:15SS"},
        {75.5, {milliseconds, {}, "T", 2}, ""},
        {notANumber, {.maxDisplayedTime = 10}, ""},
        {infinity, {.maxDisplayedTime = 10}, "00:00"},
        {-9223372036854775808.0, {}, "00:00:00"},
    };
    for (const auto& [seconds, options, shown] : cases)
        EXPECT_EQ(positionalString(seconds, options), shown) << seconds;
}

TEST(TimeStringTests, The_shared_formatters_serve_threads_that_start_together)
{
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int index = 0; index < 8; ++index)
            threads.emplace_back([&] {
                for (int i = 0; i < 100; ++i)
                    wrong += positionalString(3725.5, {.resolution = milliseconds}) != "01:02:05.50"
                        || positionalString(75.5, {milliseconds, {}, "h", 1}) != "01:15125";
            });
    }
    EXPECT_EQ(wrong, 0);
}

TEST(TimeStringTests, Positions_that_have_no_layout_stop_the_process)
{
    for (double reference : {notANumber, infinity, -infinity, 9223372036854775808.0})
        EXPECT_DEATH(positionalString(1, {.maxDisplayedTime = reference}), "finite reference time");
    EXPECT_DEATH(positionalString(infinity, {}), "finite reference time");
    EXPECT_DEATH(positionalString(1, {milliseconds, {}, ".", -1}), "negative number of digits");
    EXPECT_DEATH(toTimeString(notANumber, {}), "cannot be written");
    EXPECT_DEATH(toTimeString(1, {.allowedUnits = Unit::era}), "cannot be written");
}

TEST(TimeStringTests, Unit_titles_are_the_words_beside_a_count)
{
    struct Case {
        const char* locale;
        platform::NSCalendarUnit unit;
        std::int64_t value;
        Style style;
        const char* title;
    };
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    constexpr Case cases[] = {
        {"en", Unit::day, 3, Style::full, "days"},
        {"en", Unit::hour, 1, Style::full, "hour"},
        {"en", Unit::month, -1, Style::full, "month"},
        {"en", Unit::year, 4, Style::short_, "yrs"},
        {"en", Unit::weekOfMonth, 2, Style::full, "weeks"},
        {"en", Unit::minute, 5, Style::abbreviated, "m"},
        {"en", Unit::second, 2, Style::spellOut, "two seconds"},
        {"en", Unit::day, 1000, Style::full, "1,000 days"},
        {"fr", Unit::day, 3, Style::full, "jours"},
        {"pl", Unit::year, 5, Style::full, "lat"},
        {"ar", Unit::day, 2, Style::full, "يومان"},
        {"ja", Unit::month, 12, Style::full, "か月"},
        {"en", Unit::second, 5, Style::positional, ""},
        {"en", Unit::day | Unit::hour, 1, Style::full, ""},
        {"en", Unit::calendar, 1, Style::full, ""},
        {"en", Unit::weekday, 1, Style::full, ""},
        {"en", Unit::year, most, Style::full, ""},
    };
    for (const auto& [locale, unit, value, style, title] : cases)
        EXPECT_EQ(unitTitle(calendar(locale), unit, value, style), title) << locale << " " << value;
}

TEST(TimeStringTests, Only_times_of_a_coarser_scale_are_brought_to_the_kit_s)
{
    auto hasFields = [](const CMTime& time, std::int64_t value, std::int32_t scale, std::int64_t epoch) {
        return time.value == value && time.timescale == scale && time.epoch == epoch;
    };
    EXPECT_TRUE(hasFields(highResolution(CMTime(7, 600, 3)), 7, 600, 3));
    EXPECT_TRUE(hasFields(highResolution(CMTime(44101, 44100)), 44101, 44100, 0));
    EXPECT_TRUE(hasFields(highResolution(2.3), 1380, highResolution(), 0));
    EXPECT_TRUE(highResolution(CMTime::positiveInfinity()).isPositiveInfinity());
    EXPECT_FALSE(highResolution(CMTime::indefinite()).isValid());
    for (std::int64_t frame = 0; frame < 100'000; frame += 7) {
        ASSERT_TRUE(hasFields(highResolution(_30FPS().multipliedByRatio(static_cast<int>(frame), 1)),
                              frame * 20, 600, 0));
        ASSERT_EQ(highResolution(CMTime(frame, 60)), CMTime(frame, 60));
    }
    EXPECT_EQ(_60FPS() + _60FPS(), _30FPS());
}

} // namespace zelk
