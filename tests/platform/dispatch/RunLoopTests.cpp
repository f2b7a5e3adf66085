// SPDX-License-Identifier: MIT
#include "platform/dispatch/RunLoop.h"

#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace platform {
namespace {

using namespace std::chrono_literals;

TEST(RunLoop, RunsWorkInOrderOfDeadlineThenInTheOrderGiven)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string order;
    loop.performAfter(20ms, [&] { order += "d"; });
    loop.performAfter(10ms, [&] { order += "b"; });
    loop.performAfter(10ms, [&] { order += "c"; });
    loop.perform([&] { order += "a"; });
    clock.advance(20ms);
    EXPECT_EQ(order, "abcd");
}

TEST(RunLoop, CountsADeadlineInThePastAsNow)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string order;
    loop.perform([&] { order += "first"; });
    loop.performAt(clock.now() - 1h, [&] { order += " second"; });
    loop.performAfter(-1h, [&] { order += " third"; });
    loop.perform([&] { order += " fourth"; });
    EXPECT_EQ(loop.nextDeadline(), clock.now());
    loop.runPending();
    EXPECT_EQ(order, "first second third fourth");
}

TEST(RunLoop, RunsWorkGivenDuringATurnInTheNext)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string order;
    loop.perform([&] {
        order += "1";
        // Past deadlines must not jump the queue either.
        loop.performAt(clock.now() - 1s, [&] { order += "3"; });
    });
    loop.performAfter(0s, [&] { order += "2"; });
    EXPECT_TRUE(loop.runPending());
    EXPECT_EQ(order, "12");
    EXPECT_TRUE(loop.runPending());
    EXPECT_EQ(order, "123");
    EXPECT_FALSE(loop.runPending());
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(RunLoop, GoesOnWithTheRestOfTheWorkInANestedTurn)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string order;
    loop.perform([&] {
        order += "(";
        loop.runPending();
        order += ")";
    });
    loop.perform([&] { order += "left"; });
    loop.runPending();
    EXPECT_EQ(order, "(left)");
}

TEST(RunLoop, NeverRunsCancelledWorkAndReleasesItAtOnce)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    auto held = std::make_shared<int>(0);
    auto token = loop.schedule(clock.now() + 1s, [held] { ++*held; });
    auto dropped = loop.schedule(clock.now() + 1s, [held] { ++*held; });
    EXPECT_EQ(held.use_count(), 3);
    token.cancel();
    dropped = {};
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
    clock.advance(2s);
    EXPECT_EQ(*held, 0);
}

TEST(RunLoop, CancelsWorkThatIsDueInTheSameTurn)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    bool ran = false;
    Token second;
    auto first = loop.schedule(clock.now(), [&] { second.cancel(); });
    second = loop.schedule(clock.now(), [&] { ran = true; });
    loop.runPending();
    EXPECT_FALSE(ran);
}

TEST(RunLoop, LetsWorkCancelItsOwnToken)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int runs = 0;
    Token token;
    token = loop.schedule(clock.now(), [&runs, &token, kept = std::make_unique<int>(7)] {
        token = {};
        runs += *kept; // the work is still whole
    });
    clock.settle();
    EXPECT_EQ(runs, 7);
}

TEST(RunLoop, WakesTheOuterLoopOnlyWhenTheNextDeadlineComesNearer)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int wakes = 0;
    loop.setWakeUp([&] { ++wakes; });
    loop.performAfter(10s, [] { });
    EXPECT_EQ(wakes, 1);
    loop.performAfter(20s, [] { });
    EXPECT_EQ(wakes, 1) << "later work changes nothing";
    loop.performAfter(5s, [] { });
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(loop.nextDeadline(), clock.now() + 5s);
    loop.requestTurn();
    loop.requestTurn();
    EXPECT_EQ(wakes, 3) << "many requests make one turn";
    EXPECT_EQ(loop.nextDeadline(), clock.now());
    loop.runPending();
    EXPECT_EQ(loop.nextDeadline(), clock.now() + 5s);
    loop.setWakeUp(nullptr);
    loop.perform([] { });
    EXPECT_EQ(wakes, 3);
}

TEST(RunLoop, KeepsTheOrderOfEachThreadThatGivesWork)
{
    constexpr int threadCount = 4;
    constexpr int workCount = 500;
    auto& loop = RunLoop::main();
    std::vector<std::vector<int>> received(threadCount);
    int total = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([&, thread] {
            for (int number = 0; number < workCount; ++number) {
                loop.perform([&, thread, number] {
                    received[thread].push_back(number);
                    if (++total == threadCount * workCount)
                        loop.stop();
                });
                loop.schedule(loop.clock().now() + 1h, [] { ADD_FAILURE(); }).cancel();
            }
        });
    loop.run();
    for (auto& numbers : received) {
        EXPECT_EQ(numbers.size(), workCount);
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TEST(RunLoop, SleepsUntilTheDeadlineAndReturnsWhenStopped)
{
    auto& loop = RunLoop::main();
    const Instant deadline = loop.clock().now() + 3ms;
    Instant ran;
    loop.performAt(deadline, [&] {
        ran = loop.clock().now();
        loop.stop();
    });
    loop.run();
    EXPECT_GE(ran, deadline);
}

TEST(RunLoop, EndsOnlyTheInnermostRunWhenStopped)
{
    auto& loop = RunLoop::main();
    std::string order;
    loop.perform([&] {
        loop.perform([&] {
            order += "inner ";
            loop.stop();
        });
        loop.run();
        order += "outer";
        loop.perform([&] { loop.stop(); });
    });
    loop.run();
    EXPECT_EQ(order, "inner outer");
}

TEST(RunLoop, ReturnsAfterOneTurnWhenItWasStoppedBefore)
{
    auto& loop = RunLoop::main();
    bool ran = false;
    loop.stop();
    loop.perform([&] { ran = true; });
    loop.run();
    EXPECT_TRUE(ran);
}

void changeSomethingOffTheMainThread()
{
    std::thread([] { assertOnMainThread(); }).join();
}

TEST(RunLoopDeathTest, StopsTheProcessWhenItIsMisused)
{
    RunLoop::main();
    EXPECT_TRUE(isOnMainThread());
    EXPECT_DEATH(changeSomethingOffTheMainThread(), "changeSomethingOffTheMainThread.* off the main thread");
    EXPECT_DEATH(std::thread([] { RunLoop::main().runPending(); }).join(), "own thread");
    EXPECT_DEATH(RunLoop::main().perform(nullptr), "callable");
    EXPECT_DEATH(
        {
            VirtualClock clock;
            RunLoop::main().run();
        },
        "advance it instead");
}

} // namespace
} // namespace platform
