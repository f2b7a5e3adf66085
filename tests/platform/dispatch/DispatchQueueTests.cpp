// SPDX-License-Identifier: MIT
#include "platform/dispatch/DispatchQueue.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace platform {
namespace {

using namespace std::chrono_literals;
using enum DispatchQueue::Initially;

TEST(DispatchQueue, RunsWorkFromManyThreadsOneByOneAndInTheOrderOfEach)
{
    auto& loop = RunLoop::main();
    for (auto& queue : {DispatchQueue::make("test.order"), DispatchQueue::main()}) {
        std::vector<std::vector<int>> received(4); // touched by the queue only
        std::atomic<int> left = 4;
        std::vector<std::jthread> threads;
        for (auto& numbers : received)
            threads.emplace_back([&] {
                for (int number = 0; number < 500; ++number) {
                    auto work = [&, number] { numbers.push_back(number); };
                    number % 100 == 50 ? queue->sync(work) : queue->async(work);
                    loop.schedule(loop.clock().now() + 1h, [] { ADD_FAILURE(); }).cancel();
                }
                if (--left == 0)
                    loop.stop();
            });
        loop.run();
        threads.clear();
        VirtualClock().settleWithBackgroundQueues();
        for (auto& numbers : received)
            EXPECT_TRUE(numbers.size() == 500 && std::ranges::is_sorted(numbers)) << queue->label();
    }
}

TEST(DispatchQueue, RunsNothingFromAPieceThatSuspendsItUntilEverySuspensionIsResumed)
{
    VirtualClock clock;
    auto queue = DispatchQueue::make("test.suspended", suspended);
    std::string order;
    queue->async([&] {
        queue->suspend();
        queue->suspend();
        queue->async([&] { order += "c"; });
        order += "a";
    });
    queue->async([&] { order += "b"; });
    for (auto expected : {"", "a"}) {
        clock.settleWithBackgroundQueues();
        EXPECT_EQ(order, expected);
        queue->resume();
    }
    std::jthread waiter([&] { queue->sync([&] { order += "s"; }); });
    DispatchQueue::make("test.other")->sync([] { });
    clock.settleWithBackgroundQueues();
    queue->resume();
    waiter.join(); // would wait for ever
    EXPECT_EQ(order, "abcs");
}

TEST(DispatchQueue, RunsItsWorkAfterItWasLetGoUnlessItIsSuspended)
{
    auto held = std::make_shared<int>(0);
    for (auto state : {active, suspended})
        DispatchQueue::make("test.let.go", state)->async([held] { ++*held; });
    VirtualClock().settleWithBackgroundQueues();
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1) << "released without running";
}

// Makes each of many queues wait for the next.
void runChain()
{
    std::vector<std::shared_ptr<DispatchQueue>> queues;
    for (int number = 0; number < 40; ++number)
        queues.push_back(DispatchQueue::make("test.chain"));
    std::atomic<int> reached = 0;
    for (int number = 0; number < 39; ++number)
        queues[number]->async([&, number] { reached += queues[number + 1]->sync([] { return 1; }); });
    for (auto& queue : queues)
        queue->sync([] { });
    EXPECT_EQ(reached, 39);
}

TEST(DispatchQueue, LetsManyQueuesWaitForOneAnotherWithoutRunningOutOfThreadsOrKeepingThem)
{
    for (int round = 0; round < 30; ++round) {
        runChain();
        std::promise<void> ran;
        DispatchQueue::make("test.after.chain")->async([&] { ran.set_value(); });
        ran.get_future().wait(); // would wait for ever if a thread that filled in took the news along
    }
    VirtualClock clock;
    std::atomic<unsigned> running = 0, most = 0;
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

TEST(DispatchQueue, DelaysBackgroundWorkWhileTheMainThreadIsBusy)
{
    auto& clock = RunLoop::main().clock();
    auto queue = DispatchQueue::make("test.after");
    std::promise<Instant> ran;
    const Instant start = clock.now();
    queue->asyncAfter(2ms, [&] { ran.set_value(clock.now()); });
    EXPECT_GE(ran.get_future().get() - start, 2ms); // this thread takes no turns
}

TEST(DispatchQueue, LetsAnotherQueueHaveItsTurnBesideQueuesThatNeverEnd)
{
    std::atomic<bool> isOver = false;
    std::function<void(std::shared_ptr<DispatchQueue>)> again = [&](auto queue) {
        if (!isOver)
            queue->async([&, queue] { again(queue); });
    };
    for (int number = 0; number < 32; ++number)
        again(DispatchQueue::make("test.busy"));
    std::promise<void> ran;
    DispatchQueue::make("test.modest")->async([&] { ran.set_value(); });
    ran.get_future().wait(); // would starve
    isOver = true;
    VirtualClock().settleWithBackgroundQueues();
}

TEST(DispatchQueueDeathTest, StopsTheProcessInsteadOfWaitingForItself)
{
    auto queue = DispatchQueue::make("test.self");
    auto other = DispatchQueue::make("test.between");
    EXPECT_DEATH(DispatchQueue::main()->sync([] { }), "sync on the queue 'main' from itself");
    EXPECT_DEATH(queue->sync([&] { other->sync([&] { queue->sync([] { }); }); }),
                 "sync on the queue 'test.self' from itself");
    EXPECT_DEATH(queue->resume(), "'test.self' was resumed more often");
    EXPECT_DEATH(DispatchQueue::main()->suspend(), "main queue cannot be suspended");
}

TEST(DispatchWorkItem, RunsOncePerTimeItIsGivenUntilItIsCancelled)
{
    VirtualClock clock; // delays the work of background queues too
    std::atomic<int> runs = 0;
    auto item = std::make_shared<DispatchWorkItem>([&] { ++runs; });
    for (auto delay : {2s, 0s, 3s, 1s})
        DispatchQueue::make("test.item")->asyncAfter(delay, item);
    for (int expected : {1, 2, 3, 3}) {
        clock.settleWithBackgroundQueues();
        EXPECT_EQ(runs, expected);
        if (runs == 3)
            item->cancel();
        clock.advance(1s);
    }
}

} // namespace
} // namespace platform
