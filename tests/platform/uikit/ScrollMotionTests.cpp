// SPDX-License-Identifier: MIT
#include "platform/uikit/ScrollMotion.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

using namespace std::chrono_literals;

// What a motion covers until it is finished, in frames of one length.
CGFloat whole(ScrollMotion motion, Duration frame)
{
    CGFloat sum = 0;
    for (Instant now{frame}; !motion.isFinished() && now < Instant{20s}; now += frame)
        sum += motion.advance(now).dy;
    EXPECT_TRUE(motion.isFinished());
    return sum;
}

TEST(ScrollMotion, AWheelsWayIsGoneExactlyWhateverTheFrameRate)
{
    for (auto frame : {1ms, 7ms, 16ms, 500ms})
        EXPECT_NEAR(whole(ScrollMotion::wheel({0, 51}, {}), frame), 51, 1e-9);
}

TEST(ScrollMotion, ADecelerationGoesAsFarAsThePublishedRateSays)
{
    // Speed v at rate r a millisecond goes v / (1000 * -ln r) points in all.
    auto expected = 2000 / (1000 * -std::log(0.998));
    for (auto frame : {1ms, 16ms, 100ms})
        EXPECT_NEAR(whole(ScrollMotion::deceleration({0, 2000}, 0.998, {}), frame), expected, 6);
    EXPECT_NEAR(whole(ScrollMotion::deceleration({0, 2000}, std::nan(""), {}), 16ms), expected, 6);
    EXPECT_EQ(ScrollMotion::wheel({0, 51}, Instant{1s}).advance(Instant{500ms}).dy, 0) << "time runs back";
}

} // namespace
} // namespace platform
