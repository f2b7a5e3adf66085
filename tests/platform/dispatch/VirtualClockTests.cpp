// SPDX-License-Identifier: MIT
#include "platform/dispatch/VirtualClock.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;

RunLoop& loop = RunLoop::main();

TEST(VirtualClock, RunsWorkAtTheInstantItIsDueAtUpToTheEndAndNothingAfterIt)
{
    VirtualClock clock;
    const Instant start = clock.now();
    std::vector<Duration> seen;
    std::function<void()> again = [&] {
        seen.push_back(loop.clock().now() - start);
        loop.performAfter(500ms, [&] { again(); }); // work on the way gives work on the way
    };
    again();
    loop.performAfter(1s + 1ns, [&] { seen.push_back(0s); });
    clock.advance(1s);
    EXPECT_EQ(seen, (std::vector<Duration>{0ms, 500ms, 1s}));
    EXPECT_EQ(clock.now() - start, 1s);
    clock.advance(1ns);
    EXPECT_EQ(seen.size(), 4u);
}

TEST(VirtualClock, DropsWhatWasGivenMeanwhileAndKeepsTheRemainingDelayOfTheRest)
{
    auto dropped = std::make_shared<int>(0);
    bool isOver = false;
    auto earlier = loop.schedule(loop.clock().now() + 2h, [&] { isOver = true; });
    auto later = loop.schedule(loop.clock().now() + 10h, [] { });
    {
        VirtualClock clock;
        clock.advance(3h);
        EXPECT_TRUE(isOver);
        loop.performAfter(1s, [dropped] { });
    }
    EXPECT_EQ(dropped.use_count(), 1);
    const Duration left = loop.nextDeadline().value() - loop.clock().now();
    EXPECT_TRUE(left > 6h && left <= 7h) << left.count();
    later.cancel(); // its deadline was shifted twice
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(VirtualClock, SettlesWorkThatGoesBackAndForthBetweenQueues)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.pingpong");
    int hops = 0; // handed from thread to thread, never shared
    std::function<void()> hop = [&] {
        if (++hops < 200)
            isOnMainThread() ? queue->async([&] { hop(); }) : DispatchQueue::main()->sync([&] { hop(); });
    };
    queue->async([&] { hop(); });
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(hops, 200);
}

TEST(VirtualClockDeathTest, StopsATestThatCannotEnd)
{
    VirtualClock clock;
    std::function<void()> again = [&] { loop.perform([&] { again(); }); };
    EXPECT_DEATH((again(), clock.settle()), "new work for the same instant");
    EXPECT_DEATH(clock.advance(-1ns), "backwards");
    EXPECT_DEATH(VirtualClock(), "one virtual clock");
}

} // namespace
} // namespace platform
