// SPDX-License-Identifier: MIT
#include "platform/dispatch/Timer.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;
using enum Timer::Repeats;

TEST(Timer, StaysOnItsGridWhenCallsWereMissedOrMadeByHand)
{
    VirtualClock clock;
    const Instant start = clock.now();
    std::vector<Duration> calls;
    auto timer = Timer::scheduledTimer(1s, yes, [&](Timer&) { calls.push_back(clock.now() - start); });
    clock.advance(1500ms);
    timer->fire();
    timer.reset(); // the run loop keeps it
    clock.elapse(2s);
    clock.advance(2500ms);
    EXPECT_EQ(calls, (std::vector<Duration>{1s, 1500ms, 3500ms, 4s, 5s, 6s}));
}

TEST(Timer, FiresOnceWithoutRepeatsThoughItLosesItsLastReferenceMeanwhile)
{
    for (bool byHand : {false, true}) {
        VirtualClock clock;
        int calls = 0;
        std::shared_ptr<Timer> holder;
        holder = Timer::scheduledTimer(2s, no, [&](Timer& timer) {
            holder.reset();
            calls += timer.isValid() ? 100 : 1;
        });
        clock.advance(2s - 1ns);
        EXPECT_TRUE(holder->isValid());
        if (byHand)
            holder->fire(); // the run loop does not hold it meanwhile
        clock.advance(10s);
        EXPECT_EQ(calls, 1);
    }
}

TEST(Timer, DoesNotEnterABlockThatIsRunning)
{
    VirtualClock clock;
    int calls = 0;
    Timer::scheduledTimer(1s, yes, [&](Timer& timer) {
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

TEST(Timer, IsInvalidatedFromABlockAndReleasesIt)
{
    VirtualClock clock;
    auto held = std::make_shared<int>(0);
    std::shared_ptr<Timer> second;
    std::weak_ptr<Timer> first = Timer::scheduledTimer(1s, yes, [&, held](Timer& fired) {
        fired.invalidate();
        fired.invalidate();
        second->invalidate(); // due at the same instant
        second.reset();
        ++*held; // what the block holds is still there
    });
    second = Timer::scheduledTimer(1s, yes, [held](Timer&) { ADD_FAILURE(); });
    clock.advance(10s);
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
}

TEST(Timer, TakesAnIntervalOfZeroWithoutHangingTheLoop)
{
    VirtualClock clock;
    int calls = 0;
    auto timer = Timer::scheduledTimer(0s, yes, [&](Timer&) { ++calls; });
    clock.advance(1ms);
    EXPECT_EQ(calls, 10);
    timer->invalidate();
}

} // namespace
} // namespace platform
