// SPDX-License-Identifier: MIT
#include "platform/dispatch/VirtualClock.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <vector>

namespace platform {
namespace {

using namespace std::chrono_literals;

TEST(VirtualClock, ShowsWorkTheInstantItIsDueAt)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    const Instant start = clock.now();
    std::vector<Duration> seen;
    for (auto delay : {0ms, 750ms, 1500ms, 31000ms})
        loop.performAfter(delay, [&] { seen.push_back(loop.clock().now() - start); });
    clock.advance(31s);
    EXPECT_EQ(seen, (std::vector<Duration>{0ms, 750ms, 1500ms, 31s}));
    EXPECT_EQ(clock.now() - start, 31s);
}

TEST(VirtualClock, RunsWorkThatIsDueExactlyAtTheEndAndNothingAfterIt)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int runs = 0;
    loop.performAfter(1s, [&] { ++runs; });
    loop.performAfter(1s + 1ns, [&] { ++runs; });
    clock.advance(1s);
    EXPECT_EQ(runs, 1);
    clock.advance(0ns);
    EXPECT_EQ(runs, 1);
    clock.advance(1ns);
    EXPECT_EQ(runs, 2);
}

TEST(VirtualClock, RunsWorkOnTheWayThatOtherWorkGaveOnTheWay)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    const Instant start = clock.now();
    std::vector<Duration> seen;
    std::function<void()> again = [&] {
        seen.push_back(clock.now() - start);
        loop.performAfter(400ms, [&] { again(); });
    };
    loop.perform([&] { again(); });
    clock.advance(1s);
    EXPECT_EQ(seen, (std::vector<Duration>{0ms, 400ms, 800ms}));
}

TEST(VirtualClock, MayBeAdvancedByTheWorkItRuns)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    const Instant start = clock.now();
    std::vector<int> order;
    loop.performAfter(1s, [&] {
        clock.advance(5s);
        order.push_back(1);
    });
    loop.performAfter(3s, [&] { order.push_back(3); });
    clock.advance(2s);
    EXPECT_EQ(order, (std::vector<int>{3, 1}));
    EXPECT_EQ(clock.now() - start, 6s) << "time never runs backwards";
}

TEST(VirtualClock, SettlesWithoutMovingTime)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    const Instant start = clock.now();
    int depth = 0;
    loop.perform([&] {
        loop.perform([&] {
            ++depth;
            loop.perform([&] { ++depth; });
        });
    });
    loop.performAfter(1ns, [&] { depth = 100; });
    clock.settle();
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(clock.now(), start);
}

TEST(VirtualClock, DropsWhatWasGivenMeanwhileAndKeepsTheRemainingDelayOfTheRest)
{
    auto& loop = RunLoop::main();
    auto dropped = std::make_shared<int>(0);
    bool ranEarlier = false;
    auto earlier = loop.schedule(loop.clock().now() + 2h, [&] { ranEarlier = true; });
    auto later = loop.schedule(loop.clock().now() + 10h, [] { });
    {
        VirtualClock clock;
        loop.performAfter(1s, [dropped] { ++*dropped; });
        auto left = *loop.nextDeadline() - clock.now();
        EXPECT_EQ(left, 1s);
        clock.advance(100ms);
        EXPECT_EQ(dropped.use_count(), 2);
        clock.advance(3h);
        EXPECT_TRUE(ranEarlier) << "earlier work runs when its delay is over";
        EXPECT_EQ(*dropped, 1);
        loop.performAfter(1s, [dropped] { ++*dropped; });
    }
    EXPECT_EQ(dropped.use_count(), 1);
    ASSERT_TRUE(loop.nextDeadline().has_value());
    const Duration left = *loop.nextDeadline() - loop.clock().now();
    EXPECT_GT(left, 6h);
    EXPECT_LE(left, 7h - 100ms);
    later.cancel(); // its deadline was shifted twice
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(VirtualClock, DelaysTheWorkOfBackgroundQueuesToo)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.delayed");
    std::atomic<int> runs = 0;
    queue->asyncAfter(30s, [&] { ++runs; });
    clock.advance(30s - 1ns);
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(runs, 0);
    clock.advance(1ns);
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(runs, 1);
}

TEST(VirtualClock, SettlesWorkThatGoesBackAndForthBetweenQueues)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.pingpong");
    int hops = 0; // handed from thread to thread, never shared
    std::function<void()> hop = [&] {
        if (++hops == 200)
            return;
        if (isOnMainThread())
            queue->async([&] { hop(); });
        else
            DispatchQueue::main()->async([&] { hop(); });
    };
    queue->async([&] { hop(); });
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(hops, 200);
}

TEST(VirtualClock, TakesTurnsForABackgroundQueueThatWaitsForTheMainThread)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.waits");
    bool ranOnMain = false;
    queue->async([&] { DispatchQueue::main()->sync([&] { ranOnMain = isOnMainThread(); }); });
    clock.settleWithBackgroundQueues();
    EXPECT_TRUE(ranOnMain);
}

TEST(VirtualClock, FreesAThreadThatWaitedForWorkItDrops)
{
    auto queue = DispatchQueue::make("test.dropped");
    std::promise<void> isWaiting;
    std::atomic<bool> ran = false;
    {
        VirtualClock clock;
        RunLoop::main().setWakeUp([&] { isWaiting.set_value(); });
        queue->async([&] { DispatchQueue::main()->sync([&] { ran = true; }); });
        isWaiting.get_future().wait();
        RunLoop::main().setWakeUp(nullptr);
    }
    queue->sync([] { }); // would wait for ever
    EXPECT_FALSE(ran);
}

TEST(VirtualClockDeathTest, StopsATestThatCannotEnd)
{
    EXPECT_DEATH(
        {
            VirtualClock clock;
            std::function<void()> again = [&] { RunLoop::main().perform([&] { again(); }); };
            again();
            clock.settle();
        },
        "new work for the same instant");
    EXPECT_DEATH(
        {
            VirtualClock clock;
            clock.advance(-1ns);
        },
        "backwards");
    EXPECT_DEATH(
        {
            VirtualClock clock;
            VirtualClock another;
        },
        "one virtual clock");
}

} // namespace
} // namespace platform
