// SPDX-License-Identifier: MIT
#include "platform/foundation/Calendar.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace platform {

namespace {

using Component = Calendar::Component;

Calendar calendar(Calendar::Identifier identifier, const char* zone = "UTC")
{
    return Calendar(identifier, Locale("en"), *TimeZone::withIdentifier(zone));
}

constexpr double day = 86400;

} // namespace

TEST(CalendarTests, Components_are_added_as_the_calendar_counts_them)
{
    struct Case {
        Component component;
        std::int64_t value;
        std::optional<double> later; // than 1970-01-31 12:00 UTC
    };
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    constexpr Case cases[] = {
        {Component::month, 1, 28 * day},
        {Component::month, -2, -62 * day},
        {Component::quarter, 1, 89 * day},
        {Component::year, 3, 1096 * day},
        {Component::weekOfYear, -1, -7 * day},
        {Component::weekday, 2, 2 * day},
        {Component::minute, 90, 5400},
        {Component::nanosecond, 500'000'000, 0.5},
        {Component::day, 1'000'000'000, 1e9 * day},
        {Component::calendar, 1, std::nullopt},
        {Component::timeZone, 0, std::nullopt},
        {Component::year, 5'999'999, std::nullopt},
        {Component::month, 79'999'999, std::nullopt},
        {Component::day, 2'147'483'647, std::nullopt},
        {Component::day, most, std::nullopt},
        {Component::second, -most, std::nullopt},
    };
    auto gregorian = calendar(Calendar::Identifier::gregorian);
    constexpr Date start{30.5 * day};
    for (const auto& [component, value, later] : cases) {
        auto date = gregorian.dateByAdding(component, value, start);
        ASSERT_EQ(date.has_value(), later.has_value()) << static_cast<int>(component) << " " << value;
        if (later) {
            EXPECT_EQ(date->timeIntervalSince1970 - start.timeIntervalSince1970, *later)
                << static_cast<int>(component);
        }
    }
    EXPECT_FALSE(gregorian.dateByAdding(Component::day, 1, {std::numeric_limits<double>::quiet_NaN()}));
}

TEST(CalendarTests, Days_follow_the_clock_of_the_time_zone)
{
    auto berlin = calendar(Calendar::Identifier::gregorian, "Europe/Berlin");
    constexpr Date beforeSummerTime{1711800000}; // 2024-03-30 13:00
    EXPECT_EQ(berlin.dateByAdding(Component::day, 1, beforeSummerTime)->timeIntervalSince1970,
              1711800000 + day - 3600);
    EXPECT_EQ(berlin.component(Component::hour, beforeSummerTime), 13);
    EXPECT_EQ(berlin.timeZone().secondsFromGMT({1720000000}), 7200);
    EXPECT_EQ(TimeZone::withSecondsFromGMT(-3661)->secondsFromGMT({}), -3661);
    EXPECT_FALSE(TimeZone::withSecondsFromGMT(20 * 3600));
    EXPECT_FALSE(TimeZone::withIdentifier("Mars/Olympus"));
}

// Each in a process of its own: the zone is found out once in a process.
TEST(CalendarDeathTests, The_user_s_time_zone_is_what_TZ_names_links_to_or_counts)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    tests::TemporaryDirectory directory;
    directory.write("zoneinfo/Asia/Tokyo", "");
    std::filesystem::create_symlink("zoneinfo/Asia/Tokyo", directory.path() + "/localtime");
    const struct {
        std::string variable;
        int seconds; // from GMT in summer
    } cases[] = {
        {"Europe/Berlin", 7200},
        {":Asia/Kolkata", 19800},
        {":" + directory.path() + "/localtime", 32400},
        {"XYZ-3", 10800},
        {"GMT-3", 10800},
        {"<+0545>-5:45", 20700},
        {"", 0},
        {"/dev/null", 0},
    };
    for (const auto& [variable, seconds] : cases) {
        auto secondsOfTheUser = [&] {
            ::setenv("TZ", variable.c_str(), 1);
            return TimeZone::current().secondsFromGMT({1720000000});
        };
        EXPECT_EXIT(std::_Exit(secondsOfTheUser() == seconds ? 0 : 1), testing::ExitedWithCode(0), "")
            << variable;
    }
}

TEST(CalendarTests, Every_calendar_has_its_own_page_for_a_date)
{
    struct Case {
        Calendar::Identifier identifier;
        std::int64_t year, month, day;
    };
    using enum Calendar::Identifier;
    constexpr Case cases[] = {
        {gregorian, 2023, 11, 14},
        {buddhist, 2566, 11, 14},
        {chinese, 40, 10, 2},
        {coptic, 1740, 3, 4},
        {ethiopicAmeteMihret, 2016, 3, 4},
        {ethiopicAmeteAlem, 7516, 3, 4},
        {hebrew, 5784, 3, 1},
        {iso8601, 2023, 11, 14},
        {indian, 1945, 8, 23},
        {islamicUmmAlQura, 1445, 4, 30},
        {islamicCivil, 1445, 5, 1},
        {japanese, 5, 11, 14},
        {persian, 1402, 8, 23},
        {republicOfChina, 112, 11, 14},
        {islamicTabular, 1445, 5, 2},
    };
    for (const auto& [identifier, year, month, dayOfMonth] : cases) {
        auto page = calendar(identifier);
        constexpr Date date{1.7e9};
        EXPECT_EQ(page.component(Component::year, date), year) << static_cast<int>(identifier);
        EXPECT_EQ(page.component(Component::month, date), month) << static_cast<int>(identifier);
        EXPECT_EQ(page.component(Component::day, date), dayOfMonth) << static_cast<int>(identifier);
    }
}

} // namespace platform
