// SPDX-License-Identifier: MIT
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <string>

namespace platform {
namespace {

using namespace std::chrono_literals;

// Does something as often as it is dirty, as a view host does.
struct Stage {
    std::string name;
    int dirty = 0;
    std::string* log;
    std::function<void()> onWork = [] { };

    bool flush()
    {
        if (dirty == 0)
            return false;
        --dirty;
        *log += name;
        onWork();
        return true;
    }
};

TEST(BeforeSleepObserver, PaintsOnlyWhenStateAndLayoutHaveComeToRest)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string log;
    Stage state{"s", 1, &log}, layout{"l", 1, &log}, display{"p", 1, &log};
    // Layout changes state once, which dirties layout again: a painter must not see the middle of it.
    layout.onWork = [&, isFirst = true]() mutable {
        if (std::exchange(isFirst, false)) {
            state.dirty = 1;
            layout.dirty = 1;
        }
    };
    auto third = loop.addBeforeSleepObserver(BeforeSleepPhase::display, [&] { return display.flush(); });
    auto second = loop.addBeforeSleepObserver(BeforeSleepPhase::layout, [&] { return layout.flush(); });
    auto first = loop.addBeforeSleepObserver(BeforeSleepPhase::state, [&] { return state.flush(); });
    EXPECT_TRUE(loop.runPending());
    EXPECT_EQ(log, "slslp");
    EXPECT_FALSE(loop.runPending());
}

TEST(BeforeSleepObserver, RunsAfterTheDueWorkOfEachTurn)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string log;
    Stage stage{"|", 0, &log};
    auto token = loop.addBeforeSleepObserver(0, [&] { return stage.flush(); });
    for (auto name : {"a", "b"})
        loop.perform([&, name] {
            log += name;
            stage.dirty = 1;
        });
    loop.perform([&] { loop.perform([&] { log += "c"; }); });
    clock.settle();
    EXPECT_EQ(log, "ab|c") << "one flush for the changes of a turn, before the next turn's work";
}

TEST(BeforeSleepObserver, SeesEveryStepOfAVirtualClock)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string log;
    Stage stage{"|", 0, &log};
    auto token = loop.addBeforeSleepObserver(0, [&] { return stage.flush(); });
    for (auto delay : {1s, 2s, 2s})
        loop.performAfter(delay, [&] {
            log += "w";
            stage.dirty = 1;
        });
    clock.advance(5s);
    EXPECT_EQ(log, "w|ww|");
}

TEST(BeforeSleepObserver, GetsATurnWhenOneIsRequestedWithoutWork)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int calls = 0;
    auto token = loop.addBeforeSleepObserver(0, [&] {
        ++calls;
        return false;
    });
    clock.settle();
    const int before = calls;
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
    loop.requestTurn();
    EXPECT_EQ(loop.nextDeadline(), clock.now());
    loop.runPending();
    EXPECT_EQ(calls, before + 1);
}

TEST(BeforeSleepObserver, NeedsNoFurtherTurnForWhatTheRoundItselfHasSeenTo)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    std::string log;
    Stage state{"s", 1, &log}, layout{"l", 0, &log};
    state.onWork = [&] {
        layout.dirty = 1;
        loop.requestTurn(); // as a view does that is marked from anywhere
    };
    auto first = loop.addBeforeSleepObserver(0, [&] { return state.flush(); });
    auto second = loop.addBeforeSleepObserver(1, [&] { return layout.flush(); });
    loop.runPending();
    EXPECT_EQ(log, "sl");
    EXPECT_EQ(loop.nextDeadline(), std::nullopt) << "else an idle window would never sleep";
}

TEST(BeforeSleepObserver, MayCancelItselfAndTheNextWhileItRuns)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int secondCalls = 0;
    int firstCalls = 0;
    Token first, second;
    first = loop.addBeforeSleepObserver(0, [&, kept = std::string("kept while it runs")] {
        second.cancel();
        first.cancel();
        firstCalls += kept.empty() ? 0 : 1;
        return true;
    });
    second = loop.addBeforeSleepObserver(0, [&] { return ++secondCalls > 0; });
    clock.settle();
    clock.settle();
    EXPECT_EQ(firstCalls, 1);
    EXPECT_EQ(secondCalls, 0);
}

TEST(BeforeSleepObserver, MayTakeATurnWithoutBeingEnteredTwice)
{
    VirtualClock clock;
    auto& loop = RunLoop::main();
    int depth = 0;
    int deepest = 0;
    bool ran = false;
    auto token = loop.addBeforeSleepObserver(0, [&] {
        deepest = std::max(deepest, ++depth);
        loop.perform([&] { ran = true; });
        loop.runPending();
        --depth;
        return false;
    });
    loop.runPending();
    EXPECT_TRUE(ran);
    EXPECT_EQ(deepest, 1);
}

TEST(BeforeSleepObserver, LeavesTheLoopAliveWhenItNeverRestsOnTheRealClock)
{
    auto& loop = RunLoop::main();
    int calls = 0;
    auto token = loop.addBeforeSleepObserver(0, [&] { return ++calls > 0; });
    EXPECT_TRUE(loop.runPending());
    EXPECT_TRUE(loop.nextDeadline().has_value()) << "it goes on in the next turn";
    token.cancel();
    loop.runPending();
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(BeforeSleepObserverDeathTest, StopsATestWhenItNeverRests)
{
    EXPECT_DEATH(
        {
            VirtualClock clock;
            auto token = RunLoop::main().addBeforeSleepObserver(42, [] { return true; });
            clock.settle();
        },
        "never come to rest; the busy phase is 42");
}

} // namespace
} // namespace platform
