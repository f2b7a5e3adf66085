// SPDX-License-Identifier: MIT
#include "platform/dispatch/RunLoop.h"

#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <thread>

namespace platform {
namespace {

using namespace std::chrono_literals;

RunLoop& loop = RunLoop::main();

TEST(RunLoop, RunsWorkByDeadlineThenInTheOrderGivenAndWhatIsGivenMeanwhileInTheNextTurn)
{
    VirtualClock clock;
    std::string order;
    loop.performAfter(10ms, [&] { order += "e"; });
    loop.perform([&] {
        order += "(";
        loop.runPending(); // goes on with the work that is left
        order += ")";
        loop.performAt(clock.now() - 1s, [&] { order += "d"; }); // past, yet it must not jump the queue
    });
    loop.performAt(clock.now() - 1h, [&] { order += "b"; });
    loop.performAfter(-1h, [&] { order += "c"; });
    loop.runPending();
    EXPECT_EQ(order, "(bc)");
    EXPECT_EQ(loop.nextDeadline(), clock.now());
    EXPECT_TRUE(loop.runPending());
    EXPECT_FALSE(loop.runPending());
    clock.advance(10ms);
    EXPECT_EQ(order, "(bc)de");
}

TEST(RunLoop, NeverRunsCancelledWorkAndReleasesItAtOnce)
{
    VirtualClock clock;
    auto held = std::make_shared<int>(0);
    Token itself, sameTurn;
    itself = loop.schedule(clock.now(), [&, held] {
        itself = {};
        sameTurn.cancel();
        *held += 10; // the work is still whole
    });
    sameTurn = loop.schedule(clock.now(), [held] { ++*held; });
    auto dropped = loop.schedule(clock.now() + 1s, [held] { ++*held; });
    dropped = {};
    EXPECT_EQ(held.use_count(), 3);
    clock.advance(2s);
    EXPECT_EQ(*held, 10);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(RunLoop, WakesTheOuterLoopOnlyWhenTheNextDeadlineComesNearer)
{
    VirtualClock clock;
    int wakes = 0;
    loop.setWakeUp([&] { ++wakes; });
    loop.performAfter(10s, [] { });
    loop.performAfter(20s, [] { });
    EXPECT_EQ(wakes, 1) << "later work changes nothing";
    loop.performAfter(5s, [] { });
    EXPECT_EQ(wakes, 2);
    loop.requestTurn();
    loop.requestTurn();
    EXPECT_EQ(wakes, 3) << "many requests make one turn";
    loop.runPending();
    EXPECT_EQ(loop.nextDeadline(), clock.now() + 5s);
    loop.setWakeUp(nullptr);
}

TEST(RunLoop, SleepsUntilADeadlineAndEndsOnlyTheInnermostRunWhenStopped)
{
    std::string order;
    loop.stop(); // the next run ends after one turn
    loop.perform([&] { order += "one "; });
    loop.run();
    const Instant deadline = loop.clock().now() + 3ms;
    loop.perform([&] {
        loop.performAt(deadline, [&] {
            order += loop.clock().now() < deadline ? "early " : "inner ";
            loop.stop();
        });
        loop.run();
        order += "outer";
        loop.perform([&] { loop.stop(); });
    });
    loop.run();
    EXPECT_EQ(order, "one inner outer");
}

// Does something as often as it is dirty, as a view host does.
bool flush(int& dirty, std::string& log, const char* name)
{
    if (dirty == 0)
        return false;
    --dirty;
    log += name;
    return true;
}

TEST(RunLoop, PaintsOnlyWhenStateAndLayoutHaveComeToRest)
{
    VirtualClock clock;
    std::string log;
    int state = 1, layout = 1, display = 1;
    auto third =
        loop.addBeforeSleepObserver(BeforeSleepPhase::display, [&] { return flush(display, log, "p"); });
    auto second = loop.addBeforeSleepObserver(BeforeSleepPhase::layout, [&, isFirst = true]() mutable {
        const bool isDone = flush(layout, log, "l");
        // Layout changes state once, which dirties layout again: a painter must not see the middle of it.
        if (isDone && std::exchange(isFirst, false)) {
            state = layout = 1;
            loop.requestTurn(); // as a view does that is marked from anywhere
        }
        return isDone;
    });
    auto first = loop.addBeforeSleepObserver(BeforeSleepPhase::state, [&] { return flush(state, log, "s"); });
    EXPECT_TRUE(loop.runPending());
    EXPECT_EQ(log, "slslp");
    EXPECT_EQ(loop.nextDeadline(), std::nullopt) << "else an idle window would never sleep";
    state = 1;
    loop.requestTurn();
    clock.settle();
    EXPECT_EQ(log, "slslps") << "a turn asked for without work";
}

TEST(RunLoop, RunsObserversAfterTheDueWorkOfEachTurn)
{
    VirtualClock clock;
    std::string log;
    int dirty = 0;
    auto token = loop.addBeforeSleepObserver(0, [&] { return flush(dirty, log, "|"); });
    for (auto delay : {0s, 0s, 2s})
        loop.performAfter(delay, [&] {
            log += "w";
            dirty = 1;
        });
    loop.perform([&] { loop.perform([&] { log += "n"; }); });
    clock.advance(2s);
    EXPECT_EQ(log, "ww|nw|") << "one flush for the changes of a turn, before the next turn's work";
}

TEST(RunLoop, LetsAnObserverCancelItselfAndTheNextAndTakeATurnWithoutBeingEnteredTwice)
{
    VirtualClock clock;
    std::string log;
    Token first, second;
    first = loop.addBeforeSleepObserver(0, [&, kept = std::string(")")] {
        log += "(";
        loop.perform([&] { log += "work"; });
        loop.runPending();
        second.cancel();
        first.cancel();
        log += kept; // the observer is still whole
        return true;
    });
    second = loop.addBeforeSleepObserver(0, [&] { return (log += "second").empty(); });
    clock.settle();
    loop.runPending();
    EXPECT_EQ(log, "(work)");
}

void changeSomethingOffTheMainThread()
{
    std::thread([] { assertOnMainThread(); }).join();
}

TEST(RunLoopDeathTest, StopsTheProcessWhenItIsMisused)
{
    EXPECT_DEATH(changeSomethingOffTheMainThread(), "changeSomethingOffTheMainThread.* off the main thread");
    EXPECT_DEATH(std::thread([&] { loop.runPending(); }).join(), "own thread");
    EXPECT_DEATH(loop.perform(nullptr), "callable");
    EXPECT_DEATH((VirtualClock(), loop.run()), "advance it instead");
}

TEST(RunLoopDeathTest, StopsATestWhoseObserversNeverRestButGoesOnByTheRealClock)
{
    auto token = loop.addBeforeSleepObserver(42, [] { return true; });
    EXPECT_DEATH(VirtualClock().settle(), "never come to rest; the busy phase is 42");
    EXPECT_TRUE(loop.runPending());
    EXPECT_TRUE(loop.nextDeadline().has_value()) << "in the next turn";
}

} // namespace
} // namespace platform
