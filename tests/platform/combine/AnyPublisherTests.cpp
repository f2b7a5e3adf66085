// SPDX-License-Identifier: MIT
#include "platform/combine/AnyPublisher.h"
#include "platform/combine/CurrentValueSubject.h"
#include "platform/combine/PassthroughSubject.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(AnyPublisher, PassesValuesAndTheEndThroughAChainWithAMemoryPerSubscription)
{
    CurrentValueSubject<int> subject(2);
    auto chain = subject.eraseToAnyPublisher()
                     .filter([](int value) { return value % 2 == 0; })
                     .removeDuplicates()
                     .map([](int value) { return std::to_string(value) + " "; });
    std::string logs[2];
    std::vector<AnyCancellable> subscriptions;
    for (auto& log : logs)
        chain
            .sink([&](const std::string& text) { log += text; },
                  [&](const Completion& end) { log += end.isFinished() ? "end" : "failed"; })
            .store(subscriptions);
    for (int value : {2, 3, 2, 4, 4, 2})
        subject.send(value);
    subject.complete(Completion::failure(NSError(NSCocoaError::fileReadUnknown)));
    for (auto& log : logs)
        EXPECT_EQ(log, "2 4 2 failed");
}

TEST(AnyPublisher, StartsItsSourceAnewForEachSubscriberAndShieldsThemFromOneThatBreaksTheRules)
{
    std::string log;
    std::vector<Subscriber<int>> kept;
    AnyPublisher<int> publisher([&](Subscriber<int> subscriber) {
        kept.push_back(subscriber);
        return AnyCancellable([&log] { log += "c"; });
    });
    auto onValue = [&](int value) { log += std::to_string(value); };
    auto onCompletion = [&](const Completion&) { log += "."; };
    auto ended = publisher.sink(onValue, onCompletion);
    auto cancelled = publisher.map([](int value) { return value * 10; }).sink(onValue, onCompletion);
    ASSERT_EQ(kept.size(), 2u);
    cancelled.cancel();
    for (int value : {1, 2})
        for (auto& subscriber : kept) {
            subscriber.receive(value);
            subscriber.complete(Completion::finished());
        }
    EXPECT_EQ(log, "c1.");
    ended = {};
    EXPECT_EQ(log, "c1.c");
}

TEST(AnyPublisher, DeliversInOrderWhereTheSchedulerRunsAndNothingOnceItIsCancelled)
{
    std::vector<std::move_only_function<void()>> waiting;
    PassthroughSubject<int> subject;
    auto elsewhere =
        subject.eraseToAnyPublisher().receiveOn([&](auto work) { waiting.push_back(std::move(work)); });
    std::vector<int> received;
    auto onValue = [&](int value) { received.push_back(value); };
    auto whole = elsewhere.sink(onValue, [&](const Completion&) { received.push_back(-1); });
    auto cancelled = elsewhere.map([&](int value) { return received.emplace_back(value); }).sink(onValue);
    subject.send(1);
    subject.send(2);
    subject.complete(Completion::finished());
    EXPECT_TRUE(received.empty());
    cancelled.cancel(); // while everything is on its way
    for (auto& work : waiting)
        work();
    EXPECT_EQ(received, (std::vector{1, 2, -1}));
}

TEST(AnyPublisher, AssignsWithoutKeepingTheTargetAlive)
{
    struct Label {
        void setText(const std::string& value) { text = "<" + value + ">"; }
        std::string text, hint;
    };
    CurrentValueSubject<std::string> subject("a");
    auto label = std::make_shared<Label>();
    auto byFunction = subject.eraseToAnyPublisher().assign(std::weak_ptr(label), &Label::setText);
    auto byVariable = subject.eraseToAnyPublisher().assign(std::weak_ptr(label), &Label::hint);
    subject.send("b");
    EXPECT_EQ(label->text + label->hint, "<b>b");
    EXPECT_EQ(label.use_count(), 1);
    label.reset();
    subject.send("c");
}

} // namespace
} // namespace platform
