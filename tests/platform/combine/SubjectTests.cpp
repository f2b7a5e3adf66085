// SPDX-License-Identifier: MIT
#include "platform/combine/CurrentValueSubject.h"
#include "platform/combine/PassthroughSubject.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Values = std::vector<int>;

TEST(PassthroughSubject, CompletesEachSubscriberOnceAndLateOnesAtOnceAndReleasesItsHandlers)
{
    const Error error = NSError(NSCocoaError::fileReadNoSuchFile);
    for (auto& completion : {Completion::finished(), Completion::failure(error)}) {
        PassthroughSubject<int> subject;
        auto values = std::make_shared<Values>();
        std::vector<Completion> completions;
        auto onCompletion = [&, values](const Completion& end) { completions.push_back(end); };
        auto early = subject.sink([values](int value) { values->push_back(value); }, onCompletion);
        auto cancelled = subject.sink([values](int value) { values->push_back(-value); }, onCompletion);
        subject.send(1);
        cancelled.cancel();
        EXPECT_EQ(values.use_count(), 4);
        subject.complete(completion);
        EXPECT_EQ(values.use_count(), 2) << "although the subscription is kept";
        subject.complete(Completion::finished());
        subject.send(2);
        EXPECT_EQ(*values, (Values{1, -1}));
        auto late = subject.sink([](int) { ADD_FAILURE(); }, onCompletion);
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
    AnyCancellable first, second;
    first = subject.sink([&, kept = std::make_shared<int>(10)](int value) {
        second.cancel();
        first.cancel();
        received.push_back(value + *kept); // the handler is still whole
    });
    second = subject.sink([&](int) { received.push_back(-1); });
    auto third = subject.sink([&](int value) { received.push_back(value); });
    subject.send(1);
    subject.send(2);
    EXPECT_EQ(received, (Values{11, 1, 2}));
}

TEST(PassthroughSubject, SendsToASubscriberAddedDuringASendFromTheNextValueOn)
{
    PassthroughSubject<int> subject;
    Values added;
    std::vector<AnyCancellable> subscriptions;
    auto first = subject.sink([&](int value) {
        if (value > 1)
            return;
        subject.send(2);                         // before they subscribe, though delivered after
        for (int count = 0; count < 50; ++count) // enough to move the list in memory
            subject.sink([&](int late) { added.push_back(late); }).store(subscriptions);
    });
    subject.send(1);
    EXPECT_EQ(added, Values{});
    subject.send(3);
    EXPECT_EQ(added, Values(50, 3));
}

TEST(PassthroughSubject, SurvivesItsOwnDestructionAndThatOfItsSubscribersWhileItDelivers)
{
    for (bool isEnd : {false, true}) {
        auto subject = std::make_unique<PassthroughSubject<int>>();
        int told = 0;
        AnyCancellable gone;
        auto kill = [&](auto&) {
            ++told;
            gone = {};
            subject.reset();
        };
        auto fail = [](auto&) { ADD_FAILURE(); };
        auto first = subject->sink(kill, kill);
        gone = subject->sink(fail, fail);
        auto last = subject->sink(kill, kill);
        isEnd ? subject->complete(Completion::finished()) : subject->send(1);
        EXPECT_EQ(told, 2) << "who remains still receives what was sent";
    }
}

TEST(CurrentValueSubject, LeavesEverybodyWithTheLastValueWhenAHandlerCorrectsIt)
{
    CurrentValueSubject<int> subject(0);
    Values seen, late;
    AnyCancellable added;
    auto clamp = subject.sink([&](int value) {
        if (value <= 100)
            return;
        subject.send(100);
        added = subject.sink([&](int present) { late.push_back(present); });
    });
    auto listener = subject.sink([&](int value) { seen.push_back(value); });
    subject.send(150);
    EXPECT_EQ(seen, (Values{0, 150, 100}));
    subject.send(3);
    EXPECT_EQ(late, (Values{100, 3})) << "each once, subscribed in the middle";
}

TEST(CurrentValueSubject, KeepsItsValueAfterTheEndAndSendsItToNobody)
{
    CurrentValueSubject<int> subject(1);
    subject.complete(Completion::finished());
    subject.send(2);
    EXPECT_EQ(subject.value(), 1);
    bool isOver = false;
    auto late = subject.sink([](int) { FAIL(); }, [&](const Completion&) { isOver = true; });
    EXPECT_TRUE(isOver);
}

} // namespace
} // namespace platform
