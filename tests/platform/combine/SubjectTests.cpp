// SPDX-License-Identifier: MIT
#include "platform/combine/CurrentValueSubject.h"
#include "platform/combine/PassthroughSubject.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

using Values = std::vector<int>;

const Error someError = NSError(NSCocoaError::fileReadNoSuchFile);

TEST(PassthroughSubject, SendsToSubscribersInOrderOfSubscriptionUntilTheyCancel)
{
    PassthroughSubject<int> subject;
    std::string log;
    auto first = subject.sink([&](int value) { log += "a" + std::to_string(value) + " "; });
    auto second = subject.sink([&](int value) { log += "b" + std::to_string(value) + " "; });
    subject.send(1);
    first.cancel();
    first.cancel();
    subject.send(2);
    second = {};
    subject.send(3);
    EXPECT_EQ(log, "a1 b1 b2 ");
}

TEST(PassthroughSubject, CompletesEachSubscriberOnceAndLateOnesAtOnce)
{
    for (auto& completion : {Completion::finished(), Completion::failure(someError)}) {
        PassthroughSubject<int> subject;
        Values values;
        std::vector<Completion> completions;
        auto onCompletion = [&](const Completion& end) { completions.push_back(end); };
        auto early = subject.sink([&](int value) { values.push_back(value); }, onCompletion);
        subject.send(1);
        subject.complete(completion);
        subject.complete(Completion::finished());
        subject.send(2);
        EXPECT_EQ(values, Values{1});
        EXPECT_EQ(completions, std::vector{completion});
        auto late = subject.sink([&](int value) { values.push_back(value); }, onCompletion);
        EXPECT_EQ(completions, (std::vector{completion, completion}));
    }
}

TEST(PassthroughSubject, ShowsEverybodyTheSameOrderWhenAHandlerSends)
{
    PassthroughSubject<int> subject;
    Values first, second;
    auto sender = subject.sink([&](int value) {
        first.push_back(value);
        if (value < 3)
            subject.send(value + 1);
        if (value == 2)
            subject.complete(Completion::finished()); // after the 3 that is on its way
    });
    auto listener = subject.sink([&](int value) { second.push_back(value); });
    subject.send(1);
    EXPECT_EQ(first, (Values{1, 2, 3}));
    EXPECT_EQ(second, (Values{1, 2, 3}));
}

TEST(PassthroughSubject, LetsHandlersCancelThemselvesAndOthersDuringASend)
{
    PassthroughSubject<int> subject;
    Values received;
    AnyCancellable first, second, third;
    first = subject.sink([&, kept = std::make_shared<int>(10)](int value) {
        second.cancel();
        first.cancel();
        received.push_back(value + *kept); // the handler is still whole
    });
    second = subject.sink([&](int) { received.push_back(-1); });
    third = subject.sink([&](int value) { received.push_back(value); });
    subject.send(1);
    subject.send(2);
    EXPECT_EQ(received, (Values{11, 1, 2}));
}

TEST(PassthroughSubject, SendsToASubscriberAddedDuringASendFromTheNextValueOn)
{
    PassthroughSubject<int> subject;
    Values added;
    std::vector<AnyCancellable> subscriptions;
    subject
        .sink([&](int value) {
            if (value > 1)
                return;
            // Sent before it subscribes, though delivered after.
            subject.send(2);
            for (int count = 0; count < 50; ++count) // enough to move the list in memory
                subject.sink([&](int late) { added.push_back(late); }).store(subscriptions);
        })
        .store(subscriptions);
    subject.send(1);
    EXPECT_EQ(added, Values{});
    subject.send(3);
    EXPECT_EQ(added, Values(50, 3));
}

TEST(PassthroughSubject, SurvivesItsOwnDestructionAndThatOfItsSubscribersDuringASend)
{
    struct Listener {
        AnyCancellable subscription;
        std::string name = "alive";
    };
    auto subject = std::make_unique<PassthroughSubject<int>>();
    auto listener = std::make_shared<Listener>();
    Values after;
    auto killer = subject->sink([&](int) {
        listener.reset();
        subject.reset();
    });
    listener->subscription = subject->sink([&, raw = listener.get()](int) { FAIL() << raw->name; });
    auto last = subject->sink([&](int value) { after.push_back(value); });
    subject->send(1);
    EXPECT_EQ(after, Values{1}) << "who remains still receives what was sent";
}

TEST(PassthroughSubject, SurvivesItsOwnDestructionDuringItsCompletion)
{
    auto subject = std::make_unique<PassthroughSubject<int>>();
    int completions = 0;
    auto onCompletion = [&](const Completion&) {
        ++completions;
        subject.reset();
    };
    auto first = subject->sink([](int) { }, onCompletion);
    auto second = subject->sink([](int) { }, onCompletion);
    subject->complete(Completion::finished());
    EXPECT_EQ(completions, 2);
}

TEST(PassthroughSubject, ReleasesTheHandlersWhenTheStreamEndsOrTheSubscriptionDoes)
{
    auto held = std::make_shared<int>(0);
    PassthroughSubject<int> subject;
    auto ended = subject.sink([held](int) { }, [held](const Completion&) { });
    auto cancelled = subject.sink([held](int) { });
    cancelled.cancel();
    EXPECT_EQ(held.use_count(), 3);
    subject.complete(Completion::finished());
    EXPECT_EQ(held.use_count(), 1) << "although the subscription is kept";
}

TEST(PassthroughSubject, LetsACompletedHandlerSubscribeAgain)
{
    PassthroughSubject<int> subject;
    int completions = 0;
    AnyCancellable again;
    auto first = subject.sink([](int) {},
                              [&](const Completion&) {
                                  ++completions;
                                  again = subject.sink([](int) {}, [&](const Completion&) { ++completions; });
                              });
    subject.complete(Completion::finished());
    EXPECT_EQ(completions, 2);
}

TEST(CurrentValueSubject, SendsThePresentValueAtOnceAndThenTheNewOnes)
{
    CurrentValueSubject<int> subject(1);
    Values received;
    subject.send(2);
    auto subscription = subject.sink([&](int value) {
        received.push_back(value);
        EXPECT_EQ(subject.value(), value);
    });
    subject.send(3);
    EXPECT_EQ(received, (Values{2, 3}));
}

TEST(CurrentValueSubject, LeavesEverybodyWithTheLastValueWhenAHandlerCorrectsIt)
{
    CurrentValueSubject<int> subject(0);
    Values seen;
    auto clamp = subject.sink([&](int value) {
        if (value > 100)
            subject.send(100);
    });
    auto listener = subject.sink([&](int value) { seen.push_back(value); });
    subject.send(150);
    EXPECT_EQ(seen, (Values{0, 150, 100}));
    EXPECT_EQ(subject.value(), 100);
}

TEST(CurrentValueSubject, SendsEachValueOnceToWhoSubscribesInTheMiddle)
{
    CurrentValueSubject<int> subject(0);
    Values late;
    AnyCancellable added;
    auto first = subject.sink([&](int value) {
        if (value != 1)
            return;
        subject.send(2);
        added = subject.sink([&](int present) { late.push_back(present); });
    });
    subject.send(1);
    subject.send(3);
    EXPECT_EQ(late, (Values{2, 3}));
}

TEST(CurrentValueSubject, KeepsItsValueAfterTheEndAndSendsItToNobody)
{
    CurrentValueSubject<int> subject(1);
    subject.complete(Completion::failure(someError));
    subject.send(2);
    EXPECT_EQ(subject.value(), 1);
    bool failed = false;
    auto late =
        subject.sink([](int) { FAIL(); },
                     [&](const Completion& end) { failed = end.error() && *end.error() == someError; });
    EXPECT_TRUE(failed);
}

} // namespace
} // namespace platform
