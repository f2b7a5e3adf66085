// SPDX-License-Identifier: MIT
#include "platform/combine/AnyPublisher.h"
#include "platform/combine/CurrentValueSubject.h"
#include "platform/combine/PassthroughSubject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace platform {
namespace {

// Keeps work until it is asked to run it, as a run loop does.
struct ManualQueue {
    Scheduler scheduler()
    {
        return [this](std::move_only_function<void()> work) {
            std::lock_guard lock(mutex);
            waiting.push_back(std::move(work));
            added.notify_one();
        };
    }
    void runNext()
    {
        std::unique_lock lock(mutex);
        added.wait(lock, [this] { return !waiting.empty(); });
        auto work = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        work();
    }
    std::mutex mutex;
    std::condition_variable added;
    std::deque<std::move_only_function<void()>> waiting;
};

TEST(AnyPublisher, PassesValuesAndTheEndThroughAChain)
{
    PassthroughSubject<int> subject;
    std::string log;
    auto subscription = subject.eraseToAnyPublisher()
                            .filter([](int value) { return value % 2 == 0; })
                            .removeDuplicates()
                            .map([](int value) { return std::to_string(value) + " "; })
                            .sink([&](const std::string& text) { log += text; },
                                  [&](const Completion& end) { log += end.isFinished() ? "end" : "failed"; });
    for (int value : {2, 3, 2, 4, 4, 2})
        subject.send(value);
    subject.complete(Completion::failure(NSError(NSCocoaError::fileReadUnknown)));
    EXPECT_EQ(log, "2 4 2 failed");
}

TEST(AnyPublisher, KeepsTheMemoryOfDuplicatesPerSubscription)
{
    CurrentValueSubject<int> subject(5);
    auto publisher = subject.eraseToAnyPublisher().removeDuplicates();
    int first = 0;
    int second = 0;
    auto one = publisher.sink([&](int) { ++first; });
    auto two = publisher.sink([&](int) { ++second; });
    subject.send(5);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(AnyPublisher, StartsItsSourceAnewForEachSubscriberAndCancelsIt)
{
    int starts = 0;
    int cancels = 0;
    AnyPublisher<int> publisher([&](Subscriber<int> subscriber) {
        subscriber.receive(++starts);
        return AnyCancellable([&] { ++cancels; });
    });
    EXPECT_EQ(starts, 0);
    std::vector<int> received;
    auto one =
        publisher.map([](int value) { return value * 10; }).sink([&](int v) { received.push_back(v); });
    auto two = publisher.sink([&](int value) { received.push_back(value); });
    EXPECT_EQ(received, (std::vector<int>{10, 2}));
    one.cancel();
    EXPECT_EQ(cancels, 1);
    two = {};
    EXPECT_EQ(cancels, 2);
}

TEST(AnyPublisher, ProtectsSubscribersFromASourceThatBreaksTheRules)
{
    std::shared_ptr<Subscriber<int>> kept;
    AnyPublisher<int> publisher([&](Subscriber<int> subscriber) {
        kept = std::make_shared<Subscriber<int>>(subscriber);
        return AnyCancellable();
    });
    std::string log;
    auto onValue = [&](int value) { log += std::to_string(value); };
    auto onCompletion = [&](const Completion&) { log += "."; };
    auto ended = publisher.sink(onValue, onCompletion);
    kept->receive(1);
    kept->complete(Completion::finished());
    kept->complete(Completion::finished());
    kept->receive(2);
    EXPECT_EQ(log, "1.");
    auto cancelled = publisher.sink(onValue, onCompletion);
    cancelled.cancel();
    kept->receive(3);
    kept->complete(Completion::finished());
    EXPECT_EQ(log, "1.");
}

TEST(AnyPublisher, DeliversFromAnotherThreadWhereTheSchedulerRuns)
{
    ManualQueue queue;
    AnyPublisher<int> publisher([](Subscriber<int> subscriber) {
        auto thread = std::make_shared<std::jthread>([subscriber] {
            for (int value = 0; value < 1000; ++value)
                subscriber.receive(value);
            subscriber.complete(Completion::finished());
        });
        return AnyCancellable([thread] { thread->join(); });
    });
    std::vector<int> received;
    bool isOver = false;
    auto subscription =
        publisher.receiveOn(queue.scheduler())
            .sink([&](int value) { received.push_back(value); }, [&](const Completion&) { isOver = true; });
    while (!isOver)
        queue.runNext();
    ASSERT_EQ(received.size(), 1000u);
    EXPECT_TRUE(std::ranges::is_sorted(received));
}

TEST(AnyPublisher, CallsNothingOfAChainOnceItIsCancelledThoughValuesAreOnTheirWay)
{
    ManualQueue queue;
    PassthroughSubject<int> subject;
    int calls = 0;
    auto subscription = subject.eraseToAnyPublisher()
                            .receiveOn(queue.scheduler())
                            .map([&](int value) { return calls += value; })
                            .sink([&](int) { ++calls; });
    subject.send(1);
    subscription.cancel();
    queue.runNext();
    EXPECT_EQ(calls, 0);
}

TEST(AnyPublisher, AssignsWithoutKeepingTheTargetAlive)
{
    struct Label {
        void setText(const std::string& value) { text = "<" + value + ">"; }
        std::string text;
        std::string hint;
    };
    CurrentValueSubject<std::string> subject("a");
    auto label = std::make_shared<Label>();
    auto byFunction = subject.eraseToAnyPublisher().assign(std::weak_ptr(label), &Label::setText);
    auto byVariable = subject.eraseToAnyPublisher().assign(std::weak_ptr(label), &Label::hint);
    subject.send("b");
    EXPECT_EQ(label->text, "<b>");
    EXPECT_EQ(label->hint, "b");
    std::weak_ptr<Label> watched = label;
    label.reset();
    EXPECT_TRUE(watched.expired());
    subject.send("c");
}

TEST(AnyCancellable, ReplacesASubscriptionByEndingTheEarlierOneOnce)
{
    std::string log;
    AnyCancellable subscription([&] { log += "a"; });
    subscription = AnyCancellable([&] { log += "b"; });
    EXPECT_EQ(log, "a");
    AnyCancellable moved = std::move(subscription);
    EXPECT_FALSE(subscription);
    {
        std::vector<AnyCancellable> subscriptions;
        std::move(moved).store(subscriptions);
        EXPECT_EQ(log, "a");
    }
    EXPECT_EQ(log, "ab");
}

} // namespace
} // namespace platform
