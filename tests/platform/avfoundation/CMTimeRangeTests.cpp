// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMTimeRange.h"

#include <gtest/gtest.h>

namespace platform {

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
