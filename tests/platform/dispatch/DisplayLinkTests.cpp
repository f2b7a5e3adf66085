// SPDX-License-Identifier: MIT
#include "platform/dispatch/DisplayLink.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;

struct RecordingDriver final : DisplayLinkDriver {
    void start() override { log += "start "; }
    void stop() override { log += "stop "; }
    std::string log;
};

TEST(DisplayLink, MakesSixtyFramesASecondButNoneThatABusyMainThreadMissedOrNobodyAsksFor)
{
    VirtualClock clock;
    int frames = 0;
    Token token;
    token = DisplayLink::shared().request([&](Instant frameTime) {
        EXPECT_EQ(frameTime, clock.now());
        if (++frames == 61)
            token.cancel();
    });
    clock.elapse(500ms);
    for (auto [step, expected] : {std::pair(0ms, 1), {16ms, 1}, {1ms, 2}, {982ms, 60}, {10s, 61}}) {
        clock.advance(step);
        EXPECT_EQ(frames, expected);
    }
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt) << "idle means no timer";
}

TEST(DisplayLink, LetsCallbacksCancelAndRequestWhileAFrameIsDelivered)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    std::string log;
    Token first, second, added;
    first = link.request([&, kept = std::string("1")](Instant) {
        second.cancel();
        added = link.request([&](Instant) { log += "n"; });
        first.cancel();
        log += kept;
    });
    second = link.request([&](Instant) { log += "2"; });
    clock.advance(17ms);
    EXPECT_EQ(log, "1") << "a new request waits for the next frame";
    clock.advance(17ms);
    EXPECT_EQ(log, "1n");
}

TEST(DisplayLink, HandsFramesOverToAWindowSystemAndBack)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    auto driver = std::make_shared<RecordingDriver>();
    int frames = 0;
    auto count = [&](Instant) { ++frames; };
    Token token = link.request(count);
    link.setDriver(driver);
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
    link.deliverFrame(clock.now());
    token.cancel();
    EXPECT_EQ(driver->log, "start stop ");
    link.deliverFrame(clock.now()); // one that was on its way
    EXPECT_EQ(frames, 1);
    token = link.request([&](Instant) {
        token.cancel();
        token = link.request(count);
    });
    link.deliverFrame(clock.now());
    EXPECT_EQ(driver->log, "start stop start ") << "animations that follow each other need no stop";
    link.setDriver(nullptr);
    EXPECT_EQ(driver->log, "start stop start stop ");
    clock.advance(17ms);
    EXPECT_EQ(frames, 2) << "the run loop goes on";
}

} // namespace
} // namespace platform
