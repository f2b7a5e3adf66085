// SPDX-License-Identifier: MIT
#include "platform/uikit/AnimationTiming.h"
#include "platform/uikit/ScrollMotion.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

constexpr auto infinity = std::numeric_limits<double>::infinity();
constexpr auto nan = std::numeric_limits<double>::quiet_NaN();

TEST(AnimationTiming, CubicsPassThroughPublishedPoints)
{
    const std::tuple<std::string_view, AnimationTiming, double, double> cases[] = {
        {"linear, a quarter", AnimationTiming::linear(2), 0.5, 0.25},
        {"ease in and out is symmetric", AnimationTiming::easeInOut(1), 0.5, 0.5},
        {"ease in and out, a quarter", AnimationTiming::easeInOut(1), 0.25, 0.129162},
        {"ease in, the middle", AnimationTiming::easeIn(1), 0.5, 0.315357},
        {"ease out mirrors ease in", AnimationTiming::easeOut(1), 0.5, 1 - 0.315357},
        {"before the start", AnimationTiming::easeOut(1), -3, 0},
        {"no number", AnimationTiming::easeOut(1), nan, 0},
    };
    for (auto& [name, timing, elapsed, progress] : cases) {
        EXPECT_NEAR(timing.sample(elapsed).progress, progress, 2e-4) << name;
        EXPECT_FALSE(timing.sample(elapsed).isFinished) << name;
    }
}

TEST(AnimationTiming, EveryTimingEndsAtItsTarget)
{
    auto spring = AnimationTiming::spring(0.5, 0.5), stiff = AnimationTiming::spring(0.5, 4);
    auto critical = AnimationTiming::spring(0.5, 1), undamped = AnimationTiming::spring(0.5, 0);
    auto broken = AnimationTiming{.x1 = nan, .y1 = nan, .x2 = -7, .y2 = infinity, .duration = 1};
    for (auto& timing : {AnimationTiming::linear(1), AnimationTiming::linear(0), AnimationTiming::linear(-1),
                         AnimationTiming::linear(nan), spring, stiff, critical, undamped, broken}) {
        auto end = timing.sample(1e6);
        EXPECT_TRUE(end.isFinished);
        EXPECT_EQ(end.progress, 1);
        EXPECT_EQ(end.velocity, 0);
        for (double time = 0; time < 3; time += 0.01)
            ASSERT_TRUE(std::isfinite(timing.sample(time).progress));
    }
}

TEST(AnimationTiming, VelocityIsTheSlopeOfProgressAndBeginsAsGiven)
{
    for (double damping : {0.3, 1.0, 2.0})
        EXPECT_NEAR(AnimationTiming::spring(0.5, damping).sample(0, 12).velocity, 12, 1e-9);
    for (auto& timing : {AnimationTiming::easeInOut(0.7), AnimationTiming::spring(0.6, 0.4),
                         AnimationTiming::spring(0.6, 1), AnimationTiming::spring(0.6, 2.5)})
        for (double time : {0.05, 0.2, 0.33, 0.6}) {
            constexpr double step = 1e-5;
            auto slope = (timing.sample(time + step, 3).progress - timing.sample(time - step, 3).progress)
                / (2 * step);
            EXPECT_NEAR(timing.sample(time, 3).velocity, slope, 1e-3 * std::max(1.0, std::abs(slope)));
        }
}

TEST(AnimationTiming, OnlyAnUnderdampedSpringGoesPastItsTarget)
{
    auto highest = [](double damping) {
        auto timing = AnimationTiming::spring(0.5, damping);
        double result = 0;
        for (double time = 0; time < 4; time += 0.001)
            result = std::max(result, timing.sample(time).progress);
        return result;
    };
    EXPECT_NEAR(highest(0.5), 1 + std::exp(-M_PI * 0.5 / std::sqrt(0.75)), 1e-3); // the textbook's overshoot
    EXPECT_LE(highest(1), 1);
    EXPECT_LE(highest(2), 1);
}

TEST(AnimationTiming, DelayRepeatsDirectionAndSpeedShapeTheCourse)
{
    auto with = [](double delay, double repeats, bool reverses, double speed) {
        auto timing = AnimationTiming::linear(1);
        timing.delay = delay;
        timing.repeatCount = repeats;
        timing.autoreverses = reverses;
        timing.speed = speed;
        return timing;
    };
    auto resting = [&](double repeats, bool reverses, double speed) {
        auto timing = with(1, repeats, reverses, speed);
        timing.cycleDelay = 0.5;
        return timing;
    };
    const std::tuple<std::string_view, AnimationTiming, double, double, bool> cases[] = {
        {"each cycle rests first", resting(3, false, 1), 2.75, 0, false},
        {"and goes on", resting(3, false, 1), 3.25, 0.25, false},
        {"back, it rests last", resting(2, true, 1), 2.75, 0.75, false},
        {"which is at the start", resting(2, true, 1), 3.75, 0, false},
        {"rests are as fast as the rest", resting(1, false, 2), 1.5, 0.5, false},
        {"during the delay", with(2, 1, false, 1), 1.9, 0, false},
        {"after the delay", with(2, 1, false, 1), 2.25, 0.25, false},
        {"the second cycle starts anew", with(0, 3, false, 1), 1.25, 0.25, false},
        {"the last cycle ends", with(0, 3, false, 1), 3, 1, true},
        {"every second cycle runs back", with(0, 2, true, 1), 1.25, 0.75, false},
        {"back at the start", with(0, 2, true, 1), 2, 0, true},
        {"a part of a cycle", with(0, 1.5, false, 1), 1.5, 0.5, true},
        {"for ever", with(0, infinity, true, 1), 1000.25, 0.25, false},
        {"for ever, for ever", with(0, infinity, false, 1), infinity, 0, false},
        {"twice the speed", with(0, 1, false, 2), 0.25, 0.5, false},
        {"no speed at all counts as the normal one", with(0, 1, false, 0), 0.25, 0.25, false},
        {"no repeats at all count as one", with(0, 0, false, 1), 0.5, 0.5, false},
    };
    for (auto& [name, timing, elapsed, progress, isFinished] : cases) {
        auto sample = timing.sample(elapsed);
        EXPECT_NEAR(sample.progress, progress, 1e-6) << name;
        EXPECT_EQ(sample.isFinished, isFinished) << name;
    }
}

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
