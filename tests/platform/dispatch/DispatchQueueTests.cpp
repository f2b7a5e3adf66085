// SPDX-License-Identifier: MIT
#include "platform/dispatch/DispatchQueue.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace platform {
namespace {

using namespace std::chrono_literals;

TEST(DispatchQueue, RunsWorkFromManyThreadsOneByOneAndInTheOrderOfEach)
{
    constexpr int threadCount = 4;
    constexpr int workCount = 1000;
    auto queue = DispatchQueue::make("test.order");
    std::vector<std::vector<int>> received(threadCount); // touched by the queue only
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < threadCount; ++thread)
            threads.emplace_back([&, thread] {
                for (int number = 0; number < workCount; ++number) {
                    auto work = [&, thread, number] { received[thread].push_back(number); };
                    if (number % 100 == 50)
                        queue->sync(work);
                    else
                        queue->async(work);
                }
            });
    }
    queue->sync([] { });
    for (auto& numbers : received) {
        EXPECT_EQ(numbers.size(), workCount);
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TEST(DispatchQueue, RunsNothingUntilEverySuspensionIsResumed)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.suspended", DispatchQueue::Initially::suspended);
    queue->suspend();
    std::string order;
    queue->async([&] { order += "a"; });
    queue->async([&] { order += "b"; });
    queue->resume();
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(order, "");
    queue->resume();
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(order, "ab");
}

TEST(DispatchQueue, StopsAfterThePieceThatSuspendsIt)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.suspends.itself", DispatchQueue::Initially::suspended);
    std::string order;
    queue->async([&] {
        queue->suspend();
        queue->async([&] { order += "c"; });
        order += "a";
    });
    queue->async([&] { order += "b"; });
    queue->resume();
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(order, "a");
    queue->resume();
    queue->sync([&] { order += "s"; });
    EXPECT_EQ(order, "abcs") << "sync waits for its place";
}

TEST(DispatchQueue, LetsASyncThatWaitsInASuspendedQueueGoOnWhenItIsResumed)
{
    auto queue = DispatchQueue::make("test.sync.suspended", DispatchQueue::Initially::suspended);
    std::atomic<bool> isResumed = false;
    bool ranEarly = false;
    std::jthread waiter([&] { queue->sync([&] { ranEarly = !isResumed; }); });
    DispatchQueue::make("test.other")->sync([] { });
    isResumed = true;
    queue->resume();
    waiter.join(); // would wait for ever
    EXPECT_FALSE(ranEarly);
}

TEST(DispatchQueue, RunsItsWorkAfterItWasLetGo)
{
    std::promise<int> done;
    {
        auto queue = DispatchQueue::make("test.let.go", DispatchQueue::Initially::suspended);
        for (int number = 0; number < 100; ++number)
            queue->async([&done, number] {
                if (number == 99)
                    done.set_value(number);
            });
        queue->resume();
    }
    EXPECT_EQ(done.get_future().get(), 99);
}

TEST(DispatchQueue, ReleasesItsWorkWhenItIsLetGoSuspended)
{
    auto held = std::make_shared<int>(0);
    auto queue = DispatchQueue::make("test.dropped", DispatchQueue::Initially::suspended);
    queue->async([held] { ++*held; });
    EXPECT_EQ(held.use_count(), 2);
    queue.reset();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);
}

TEST(DispatchQueue, ReturnsFromSyncWhatTheWorkReturnsAndRunsItOnTheCallersThread)
{
    auto queue = DispatchQueue::make("test.sync");
    std::string before;
    queue->async([&] { before = "seen"; });
    auto result = queue->sync([&] {
        EXPECT_TRUE(queue->isCurrent());
        EXPECT_EQ(before, "seen");
        return std::make_unique<std::thread::id>(std::this_thread::get_id());
    });
    EXPECT_EQ(*result, std::this_thread::get_id());
    EXPECT_FALSE(queue->isCurrent());
}

// Makes each of `count` queues wait for the next, and returns when all have.
int runChain(int count)
{
    std::vector<std::shared_ptr<DispatchQueue>> queues;
    for (int number = 0; number < count; ++number)
        queues.push_back(DispatchQueue::make("test.chain"));
    std::atomic<int> reached = 0;
    for (int number = 0; number + 1 < count; ++number)
        queues[number]->async([&, number] { queues[number + 1]->sync([&] { ++reached; }); });
    for (auto& queue : queues)
        queue->sync([] { });
    return reached;
}

TEST(DispatchQueue, LetsManyQueuesWaitForOneAnotherWithoutRunningOutOfThreads)
{
    EXPECT_EQ(runChain(40), 39);
}

TEST(DispatchQueue, LeavesNoWorkLyingWhenThreadsThatFilledInGoAway)
{
    for (int round = 0; round < 100; ++round) {
        runChain(12);
        std::promise<void> ran;
        DispatchQueue::make("test.after.chain")->async([&] { ran.set_value(); });
        ran.get_future().wait(); // would wait for ever
    }
}

TEST(DispatchQueue, RunsFewPiecesAtOnceHoweverManyQueuesWaitedBefore)
{
    runChain(40);
    VirtualClock clock;
    std::atomic<unsigned> running = 0;
    std::atomic<unsigned> most = 0;
    for (int number = 0; number < 64; ++number)
        DispatchQueue::make("test.wide")->async([&] {
            const unsigned now = ++running;
            for (unsigned seen = most; now > seen && !most.compare_exchange_weak(seen, now);) { }
            for (int turn = 0; turn < 100; ++turn)
                std::this_thread::yield();
            --running;
        });
    clock.settleWithBackgroundQueues();
    EXPECT_LE(most, std::max(4u, std::thread::hardware_concurrency()));
}

TEST(DispatchQueue, RunsSyncOnTheMainQueueOnTheMainThread)
{
    auto& loop = RunLoop::main();
    auto main = std::this_thread::get_id();
    std::thread::id seen;
    int result = 0;
    std::jthread other([&] {
        result = DispatchQueue::main()->sync([&] {
            seen = std::this_thread::get_id();
            return 7;
        });
        loop.stop();
    });
    loop.run();
    other.join();
    EXPECT_EQ(seen, main);
    EXPECT_EQ(result, 7);
}

TEST(DispatchQueue, DelaysMainWorkByTheClockOfTheRunLoop)
{
    VirtualClock clock;
    std::string order;
    auto main = DispatchQueue::main();
    main->asyncAfter(750ms, [&] { order += "c"; });
    main->asyncAfter(clock.now() + 700ms, [&] { order += "b"; });
    main->async([&] { order += "a"; });
    auto item = std::make_shared<DispatchWorkItem>([&] { order += "x"; });
    main->asyncAfter(720ms, item);
    clock.advance(710ms);
    EXPECT_EQ(order, "ab");
    item->cancel();
    clock.advance(40ms);
    EXPECT_EQ(order, "abc") << "a cancelled item does nothing";
}

TEST(DispatchQueue, DelaysBackgroundWorkWhileTheMainThreadIsBusy)
{
    auto& clock = RunLoop::main().clock();
    auto queue = DispatchQueue::make("test.after");
    std::promise<Instant> ran;
    const Instant start = clock.now();
    queue->asyncAfter(2ms, [&] { ran.set_value(clock.now()); });
    EXPECT_GE(ran.get_future().get() - start, 2ms); // this thread takes no turns
}

TEST(DispatchQueue, LetsOtherQueuesHaveTheirTurnBesideAQueueThatNeverEnds)
{
    std::atomic<bool> isOver = false;
    std::vector<std::shared_ptr<DispatchQueue>> busy;
    std::atomic<int> alive = 0;
    std::function<void(int)> again = [&](int number) {
        if (isOver)
            --alive;
        else
            busy[number]->async([&, number] { again(number); });
    };
    for (int number = 0; number < 32; ++number)
        busy.push_back(DispatchQueue::make("test.busy"));
    for (int number = 0; number < 32; ++number) {
        ++alive;
        busy[number]->async([&, number] { again(number); });
    }
    std::promise<void> ran;
    DispatchQueue::make("test.modest")->async([&] { ran.set_value(); });
    ran.get_future().wait(); // would starve
    isOver = true;
    for (auto& queue : busy)
        queue->sync([] { });
    for (auto& queue : busy)
        queue->sync([] { });
    EXPECT_EQ(alive, 0);
}

TEST(DispatchQueueDeathTest, StopsTheProcessInsteadOfWaitingForItself)
{
    EXPECT_DEATH(DispatchQueue::main()->sync([] { }), "sync on the queue 'main' from itself");
    EXPECT_DEATH(
        {
            auto queue = DispatchQueue::make("test.self");
            auto other = DispatchQueue::make("test.between");
            queue->sync([&] { other->sync([&] { queue->sync([] { }); }); });
        },
        "sync on the queue 'test.self' from itself");
    EXPECT_DEATH(DispatchQueue::make("test.resume")->resume(), "'test.resume' was resumed more often");
    EXPECT_DEATH(DispatchQueue::main()->suspend(), "main queue cannot be suspended");
}

TEST(DispatchWorkItem, RunsOncePerTimeItIsGivenUntilItIsCancelled)
{
    auto queue = DispatchQueue::make("test.items");
    int runs = 0;
    std::shared_ptr<DispatchWorkItem> item;
    item = std::make_shared<DispatchWorkItem>([&] {
        if (++runs == 2)
            item->cancel();
    });
    for (int time = 0; time < 3; ++time)
        queue->async(item);
    queue->sync([] { });
    EXPECT_EQ(runs, 2);
    EXPECT_TRUE(item->isCancelled());
}

} // namespace
} // namespace platform
