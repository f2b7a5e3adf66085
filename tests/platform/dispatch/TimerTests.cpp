// SPDX-License-Identifier: MIT
#include "platform/dispatch/Timer.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace platform {
namespace {

using namespace std::chrono_literals;

TEST(Timer, FiresOnceWithoutRepeatsAndIsThenInvalid)
{
    VirtualClock clock;
    int calls = 0;
    auto timer = Timer::scheduledTimer(2s, Timer::Repeats::no, [&](Timer& fired) {
        ++calls;
        EXPECT_FALSE(fired.isValid());
    });
    clock.advance(1999ms);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(timer->isValid());
    clock.advance(10s);
    EXPECT_EQ(calls, 1);
}

TEST(Timer, StaysOnItsGridWhileNobodyHoldsIt)
{
    VirtualClock clock;
    const Instant start = clock.now();
    std::vector<Duration> calls;
    Timer::scheduledTimer(3500ms, Timer::Repeats::yes, [&](Timer&) { calls.push_back(clock.now() - start); });
    clock.advance(11s);
    EXPECT_EQ(calls, (std::vector<Duration>{3500ms, 7000ms, 10500ms}));
}

TEST(Timer, MakesUpForMissedCallsByASingleOne)
{
    VirtualClock clock;
    const Instant start = clock.now();
    std::vector<Duration> calls;
    Timer::scheduledTimer(1s, Timer::Repeats::yes, [&](Timer&) { calls.push_back(clock.now() - start); });
    clock.elapse(3500ms);
    clock.settle();
    EXPECT_EQ(calls, (std::vector<Duration>{3500ms}));
    clock.advance(2500ms);
    EXPECT_EQ(calls, (std::vector<Duration>{3500ms, 4s, 5s, 6s})) << "and goes on in step";
}

TEST(Timer, DoesNotEnterABlockThatIsRunning)
{
    VirtualClock clock;
    int calls = 0;
    Timer::scheduledTimer(1s, Timer::Repeats::yes, [&](Timer& timer) {
        if (++calls == 1) {
            clock.advance(3500ms); // as a modal loop in the block would
            timer.fire();
        }
        EXPECT_EQ(timer.fireInstant(), clock.now() + (calls == 1 ? 500ms : 1000ms));
    });
    clock.advance(1s);
    EXPECT_EQ(calls, 1);
    clock.advance(500ms);
    EXPECT_EQ(calls, 2);
}

TEST(Timer, MayLoseItsLastReferenceWhileItFires)
{
    VirtualClock clock;
    int calls = 0;
    std::shared_ptr<Timer> holder;
    holder = Timer::scheduledTimer(1s, Timer::Repeats::no, [&](Timer& timer) {
        holder.reset();
        calls += timer.isValid() ? 100 : 1;
    });
    holder->fire(); // by hand: the run loop does not hold it meanwhile
    EXPECT_EQ(calls, 1);
}

TEST(Timer, IsInvalidatedFromItsOwnBlockAndReleasesIt)
{
    VirtualClock clock;
    auto held = std::make_shared<int>(0);
    std::weak_ptr<Timer> timer = Timer::scheduledTimer(1s, Timer::Repeats::yes, [held](Timer& fired) {
        fired.invalidate();
        fired.invalidate();
        ++*held; // what the block holds is still there
    });
    EXPECT_FALSE(timer.expired()) << "the run loop keeps it";
    clock.advance(10s);
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_TRUE(timer.expired());
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
}

TEST(Timer, InvalidatesAnotherThatIsDueAtTheSameInstant)
{
    VirtualClock clock;
    std::shared_ptr<Timer> second;
    bool fired = false;
    Timer::scheduledTimer(1s, Timer::Repeats::no, [&](Timer&) { second->invalidate(); });
    second = Timer::scheduledTimer(1s, Timer::Repeats::no, [&](Timer&) { fired = true; });
    clock.advance(1s);
    EXPECT_FALSE(fired);
}

TEST(Timer, BreaksTheCycleWithABlockThatHoldsIt)
{
    VirtualClock clock;
    auto holder = std::make_shared<std::shared_ptr<Timer>>();
    *holder = Timer::scheduledTimer(1s, Timer::Repeats::yes, [holder](Timer&) { });
    std::weak_ptr<Timer> timer = *holder;
    (*holder)->invalidate();
    holder.reset();
    EXPECT_TRUE(timer.expired());
}

TEST(Timer, FiresByHandWithoutLeavingItsGrid)
{
    VirtualClock clock;
    int repeatingCalls = 0;
    int singleCalls = 0;
    auto repeating = Timer::scheduledTimer(1s, Timer::Repeats::yes, [&](Timer&) { ++repeatingCalls; });
    auto single = Timer::scheduledTimer(1s, Timer::Repeats::no, [&](Timer&) { ++singleCalls; });
    clock.advance(500ms);
    repeating->fire();
    single->fire();
    EXPECT_EQ(repeatingCalls, 1);
    EXPECT_EQ(singleCalls, 1);
    clock.advance(500ms);
    EXPECT_EQ(repeatingCalls, 2);
    EXPECT_EQ(singleCalls, 1);
}

TEST(Timer, TakesAnIntervalOfZeroWithoutHangingTheLoop)
{
    VirtualClock clock;
    int calls = 0;
    auto timer = Timer::scheduledTimer(0s, Timer::Repeats::yes, [&](Timer&) { ++calls; });
    clock.advance(1ms);
    EXPECT_EQ(calls, 10);
    timer->invalidate();
}

} // namespace
} // namespace platform
