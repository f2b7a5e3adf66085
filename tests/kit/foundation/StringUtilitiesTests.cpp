// SPDX-License-Identifier: MIT
#include "kit/foundation/compareAppVersions.h"
#include "kit/foundation/flagEmoji.h"
#include "kit/foundation/isRTL.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace zelk;

TEST(StringUtilities, Versions_are_compared_by_their_numbers)
{
    using enum ComparisonResult;
    struct Case {
        const char* first;
        const char* second;
        ComparisonResult order;
    };
    constexpr Case cases[] = {
        {"1.10", "1.9", orderedDescending},
        {"1.9", "1.10", orderedAscending},
        {"1.2", "1.2.0", orderedSame},
        {"1.2", "1.2.0.1", orderedAscending},
        {"", "", orderedSame},
        {"", "0.0", orderedSame},
        {"", "1", orderedAscending},
        {"garbage", "", orderedSame},
        {"1.0b2", "1.0", orderedSame}, // "0b2" is dropped, not counted as 0
        {"1.x.3", "1.3", orderedSame}, // and so is "x"
        {"1..2", "1.2", orderedSame},  // and what is empty
        {"...1...", "1", orderedSame},
        {"1. 3.5", "1.5", orderedSame}, // " 3" has a blank
        {"1.+3", "1.3", orderedSame},
        {"1.-3", "1.0", orderedAscending},
        {"-0", "0", orderedSame},
        {"1.+-3.7", "1.7", orderedSame},
        {"1.+.7", "1.7", orderedSame},
        {"1.-.7", "1.7", orderedSame},
        {"1.0x10.7", "1.7", orderedSame},
        {"1.1e3.7", "1.7", orderedSame},
        {"1.٣.7", "1.7", orderedSame}, // digits of ASCII only
        {"007.08", "7.8", orderedSame},
        {"9223372036854775807", "9223372036854775806", orderedDescending},
        {"9223372036854775808.1", "1", orderedSame}, // beyond 64 bits: dropped
        {"-9223372036854775808", "0", orderedAscending},
    };
    for (auto& [first, second, order] : cases) {
        EXPECT_EQ(compareAppVersions(first, second), order) << first << " and " << second;
        EXPECT_EQ(static_cast<int>(compareAppVersions(second, first)), -static_cast<int>(order)) << first;
    }
}

TEST(StringUtilities, Flags_are_of_regions_that_exist)
{
    struct Case {
        const char* code;
        std::optional<std::string> flag;
    };
    const Case cases[] = {
        {"fr", "🇫🇷"},         {"FR", "🇫🇷"},          {"De", "🇩🇪"},
        {"il", "🇮🇱"},         {"XX", std::nullopt},  {"FRA", std::nullopt},
        {"", std::nullopt},   {"F", std::nullopt},   {"f r", std::nullopt},
        {"🇫🇷", std::nullopt}, {"250", std::nullopt}, {"ß", "🇸🇸"}, // whose capitals are SS
    };
    for (auto& [code, flag] : cases)
        EXPECT_EQ(flagEmoji(code), flag) << code;
}

TEST(StringUtilities, Four_languages_run_from_right_to_left)
{
    struct Case {
        const char* text;
        bool isRTL;
    };
    constexpr Case cases[] = {
        {"שלום עולם", true},
        {"مرحبا بالعالم", true},
        {"حال شما چطور است", true},
        {"آپ کیسے ہیں", true},
        {"א שיינעם דאנק", false},
        {"پښتو ژبه", false},
        {"ދިވެހި", false},
        {"hello world", false},
        {"", false},
        {"123", false},
        {"👍", false},
        {"שלום hello world how are you", false},
    };
    for (auto& [text, isRightToLeft] : cases)
        EXPECT_EQ(isRTL(text), isRightToLeft) << text;
}
