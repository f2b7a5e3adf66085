// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMTime.h"
#include "platform/avfoundation/CMTimeRange.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace platform {

namespace {

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto infinity = std::numeric_limits<double>::infinity();
const auto notANumber = std::numeric_limits<double>::quiet_NaN();

struct Case {
    const char* name;
    CMTime actual;
    const char* expected;
};

} // namespace

TEST(CMTimeTests, Seconds_become_the_nearest_tick_and_admit_what_they_lost)
{
    const Case cases[] = {
        {"a product just below a tick", CMTime::makeWithSeconds(2.3, 600), "{1380/600 = 2.300}"},
        {"half a tick", CMTime::makeWithSeconds(0.5, 1), "{1/1 = 1.000, rounded}"},
        {"half a tick before zero", CMTime::makeWithSeconds(-0.5, 1), "{-1/1 = -1.000, rounded}"},
        {"too many ticks", CMTime::makeWithSeconds(1e18, 600),
         "{9000000000000000000/9 = 1000000000000000000.000}"},
        {"too many seconds", CMTime::makeWithSeconds(-1e30, 600), "{-INFINITY}"},
        {"infinity", CMTime::makeWithSeconds(infinity, 600), "{+INFINITY}"},
        {"not a number", CMTime::makeWithSeconds(notANumber, 600), "{INVALID}"},
        {"no timescale", CMTime::makeWithSeconds(1, 0), "{INVALID}"},
        {"a value without a timescale", CMTime(1, 0), "{INVALID}"},
    };
    for (const auto& [name, actual, expected] : cases)
        EXPECT_EQ(actual.debugDescription(), expected) << name;
    EXPECT_TRUE(std::isnan(CMTime::indefinite().seconds()));
    EXPECT_EQ(CMTime::negativeInfinity().seconds(), -infinity);
}

TEST(CMTimeTests, Arithmetic_is_exact_until_a_result_does_not_fit_and_then_says_so)
{
    const CMTime rounded = CMTime::makeWithSeconds(0.5, 1);
    const Case cases[] = {
        {"unlike scales", CMTime(1, 30) + CMTime(1, 44100), "{1471/44100 = 0.033}"},
        {"a common scale beyond 31 bits", CMTime(1, 2147483647) + CMTime(1, 2147483646),
         "{2/2147483647 = 0.000, rounded}"},
        {"a sum beyond 64 bits", CMTime(most, 3) + CMTime(3, 3),
         "{3074457345618258603/1 = 3074457345618258432.000, rounded}"},
        {"a sum beyond every scale", CMTime(most, 1) + CMTime(1, 1), "{+INFINITY}"},
        {"what was rounded stays so", rounded + CMTime(1, 1), "{2/1 = 2.000, rounded}"},
        {"a span onto a later timeline", CMTime(1, 2, 7) + CMTime(1, 2), "{2/2 = 1.000, epoch 7}"},
        {"the span between two times of it", CMTime(3, 2, 7) - CMTime(1, 2, 7), "{2/2 = 1.000}"},
        {"two timelines", CMTime(1, 1, 1) + CMTime(1, 1, 2), "{INVALID}"},
        {"infinity and indefinite", CMTime::indefinite() - CMTime::positiveInfinity(), "{-INFINITY}"},
        {"infinity less itself", CMTime::positiveInfinity() - CMTime::positiveInfinity(), "{INVALID}"},
        {"a number and indefinite", CMTime(1, 1) + CMTime::indefinite(), "{INDEFINITE}"},
        {"invalid wins", CMTime::positiveInfinity() + CMTime::invalid(), "{INVALID}"},
        {"the least value turned round", CMTime(least, 30).absoluteValue(),
         "{4611686018427387904/15 = 307445734561825856.000}"},
        {"a third that needs no finer scale", CMTime(6, 30).multipliedByRatio(1, 3), "{2/30 = 0.067}"},
        {"half of a frame", CMTime(1, 30).multipliedByRatio(-1, -2), "{1/60 = 0.017}"},
        {"a ratio by zero", CMTime(1, 30).multipliedByRatio(1, 0), "{INVALID}"},
        {"a binary fraction", CMTime(1, 3).multipliedByFloat(-0.75), "{-3/12 = -0.250}"},
        {"no binary fraction", CMTime(1, 1).multipliedByFloat(0.1),
         "{107374182/1073741824 = 0.100, rounded}"},
        {"a finer scale given back", CMTime(most, 3).multipliedByFloat(0.75),
         "{6917529027641081855/3 = 2305843009213693952.000, rounded}"},
        {"a factor beyond every scale", CMTime(-1, 3).multipliedByFloat(1e30), "{-INFINITY}"},
        {"nothing times infinity", CMTime::zero().multipliedByFloat(infinity), "{INVALID}"},
        {"infinity by a negative factor", CMTime::negativeInfinity().multiplied(-2), "{+INFINITY}"},
    };
    for (const auto& [name, actual, expected] : cases)
        EXPECT_EQ(actual.debugDescription(), expected) << name;
}

TEST(CMTimeTests, Conversions_round_by_their_method)
{
    using enum CMTimeRoundingMethod;
    struct Row {
        CMTimeRoundingMethod method;
        std::int64_t half, third, negativeHalf, negativeThird; // of a second, in whole ones
    };
    constexpr Row rows[] = {
        {roundHalfAwayFromZero, 1, 0, -1, 0},      {roundTowardZero, 0, 0, 0, 0},
        {roundAwayFromZero, 1, 1, -1, -1},         {quickTime, 0, 0, -1, -1},
        {roundTowardPositiveInfinity, 1, 1, 0, 0}, {roundTowardNegativeInfinity, 0, 0, -1, -1},
    };
    for (const auto& row : rows) {
        auto convert = [&](std::int64_t value, CMTimeScale scale) {
            auto time = CMTime(value, scale).convertScale(1, row.method);
            EXPECT_TRUE(time.hasBeenRounded());
            return time.value;
        };
        EXPECT_EQ(convert(1, 2), row.half) << static_cast<int>(row.method);
        EXPECT_EQ(convert(1, 3), row.third) << static_cast<int>(row.method);
        EXPECT_EQ(convert(-1, 2), row.negativeHalf) << static_cast<int>(row.method);
        EXPECT_EQ(convert(-1, 3), row.negativeThird) << static_cast<int>(row.method);
    }
    EXPECT_EQ(CMTime(1, 3).convertScale(4, quickTime).value, 2) << "a finer scale rounds away from zero";
    EXPECT_FALSE(CMTime(1, 30).convertScale(600).hasBeenRounded());
    EXPECT_TRUE(CMTime(most, 1).convertScale(2).isPositiveInfinity());
    EXPECT_TRUE(CMTime::indefinite().convertScale(600).isIndefinite());
}

TEST(CMTimeTests, All_times_stand_in_one_order_and_equal_ones_hash_alike)
{
    const CMTime ascending[] = {
        CMTime::negativeInfinity(),
        {least, 1},
        {most - 1, 2147483647},
        {most, 2147483647},
        {most, 1},
        {0, 1, 1},
        CMTime::indefinite(),
        CMTime::positiveInfinity(),
        CMTime::invalid(),
    };
    for (const auto& a : ascending)
        for (const auto& b : ascending) {
            EXPECT_EQ(a < b, &a < &b) << a.debugDescription() << b.debugDescription();
            EXPECT_EQ(a == b, &a == &b) << a.debugDescription() << b.debugDescription();
        }
    std::mt19937 random(1);
    for (int i = 0; i < 1000; ++i) {
        auto factor = static_cast<std::int32_t>(random() % 1000 + 1);
        CMTime time(static_cast<std::int32_t>(random()), static_cast<CMTimeScale>(random() % 100000 + 1));
        CMTime scaled(time.value * factor, time.timescale * factor);
        ASSERT_EQ(time, scaled);
        ASSERT_EQ(std::hash<CMTime>()(time), std::hash<CMTime>()(scaled));
        ASSERT_EQ(time + scaled - time, time);
    }
    EXPECT_EQ(CMTimeMaximum(CMTime(1, 2), CMTime(300, 600)).timescale, 2) << "the first of equal ones";
}

namespace {

CMTimeRange range(std::int64_t start, std::int64_t end)
{
    return CMTimeRange::fromTimeToTime({start, 1}, {end, 1});
}

} // namespace

TEST(CMTimeRangeTests, A_range_has_its_start_and_not_its_end)
{
    EXPECT_TRUE(range(1, 3).containsTime({2, 2}));
    EXPECT_FALSE(range(1, 3).containsTime({3, 1}));
    EXPECT_FALSE(range(1, 3).containsTime(CMTime::indefinite()));
    EXPECT_TRUE(CMTimeRange(CMTime::zero(), CMTime::positiveInfinity()).containsTime({1'000'000, 1}));
    EXPECT_FALSE(CMTimeRange::invalid().containsTime(CMTime::zero()));
    EXPECT_TRUE(range(1, 3).containsTimeRange(range(3, 3)));
    EXPECT_FALSE(range(1, 3).containsTimeRange(range(2, 4)));
}

TEST(CMTimeRangeTests, Only_spans_that_are_not_negative_make_a_range)
{
    EXPECT_FALSE(range(3, 1).isValid());
    EXPECT_FALSE(CMTimeRange(CMTime::zero(), CMTime(1, 1, 1)).isValid());
    EXPECT_FALSE(CMTimeRange::fromTimeToTime({0, 1, 1}, {1, 1, 2}).isValid());
    EXPECT_TRUE(CMTimeRange::fromTimeToTime({0, 1, 1}, {1, 1, 1}).isValid());
    EXPECT_TRUE(CMTimeRange(CMTime::zero(), CMTime::indefinite()).isIndefinite());
    EXPECT_TRUE(range(3, 3).isEmpty());
    EXPECT_FALSE(CMTimeRange::invalid().isEmpty());
}

TEST(CMTimeRangeTests, Ranges_are_joined_over_gaps_and_cut_to_what_they_share)
{
    struct Case {
        CMTimeRange a, b, joined, shared;
    };
    const Case cases[] = {
        {range(1, 3), range(2, 4), range(1, 4), range(2, 3)},
        {range(1, 2), range(5, 6), range(1, 6), CMTimeRange::zero()},
        {range(1, 2), range(2, 3), range(1, 3), CMTimeRange::zero()},
        {range(1, 9), range(2, 3), range(1, 9), range(2, 3)},
        {range(1, 2), CMTimeRange::invalid(), CMTimeRange::invalid(), CMTimeRange::invalid()},
        {range(1, 2), CMTimeRange(CMTime::zero(), CMTime::positiveInfinity()),
         CMTimeRange(CMTime::zero(), CMTime::positiveInfinity()), range(1, 2)},
    };
    for (const auto& [a, b, joined, shared] : cases) {
        EXPECT_EQ(a.unionWith(b), joined);
        EXPECT_EQ(b.unionWith(a), joined);
        EXPECT_EQ(a.intersection(b), shared);
        EXPECT_EQ(b.intersection(a), shared);
    }
}

} // namespace platform
