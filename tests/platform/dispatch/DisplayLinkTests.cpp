// SPDX-License-Identifier: MIT
#include "platform/dispatch/DisplayLink.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/VirtualClock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform {
namespace {

using namespace std::chrono_literals;

struct RecordingDriver final : DisplayLinkDriver {
    void start() override { log += "start "; }
    void stop() override { log += "stop "; }
    std::string log;
};

// Puts the run loop back in charge of frames.
struct DriverInPlace {
    explicit DriverInPlace(std::shared_ptr<DisplayLinkDriver> driver)
    {
        DisplayLink::shared().setDriver(std::move(driver));
    }
    ~DriverInPlace() { DisplayLink::shared().setDriver(nullptr); }
};

TEST(DisplayLink, MakesSixtyFramesASecondAndNoneWhenNobodyAsks)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    int frames = 0;
    Instant last;
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
    auto token = link.request([&](Instant frameTime) {
        EXPECT_EQ(frameTime, clock.now());
        EXPECT_GT(frameTime, last);
        last = frameTime;
        ++frames;
    });
    EXPECT_EQ(frames, 0);
    clock.advance(1s);
    EXPECT_EQ(frames, 60);
    token.cancel();
    EXPECT_FALSE(link.isRunning());
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt) << "idle means no timer";
}

TEST(DisplayLink, MakesNoFramesForThoseThatABusyMainThreadMissed)
{
    VirtualClock clock;
    int frames = 0;
    auto token = DisplayLink::shared().request([&](Instant) { ++frames; });
    clock.elapse(500ms);
    clock.settle();
    EXPECT_EQ(frames, 1);
    clock.advance(16ms);
    EXPECT_EQ(frames, 1);
    clock.advance(1ms);
    EXPECT_EQ(frames, 2);
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

TEST(DisplayLink, StopsWhenTheLastCallbackCancelsItself)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    int frames = 0;
    Token token;
    token = link.request([&](Instant) {
        if (++frames == 3)
            token.cancel();
    });
    clock.advance(1s);
    EXPECT_EQ(frames, 3);
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
}

TEST(DisplayLink, HandsFramesOverToAWindowSystem)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    auto driver = std::make_shared<RecordingDriver>();
    std::vector<Instant> frames;
    auto token = link.request([&](Instant frameTime) { frames.push_back(frameTime); });
    {
        DriverInPlace inPlace(driver);
        EXPECT_EQ(driver->log, "start ");
        EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
        link.deliverFrame(clock.now());
        EXPECT_EQ(frames, std::vector{clock.now()});
        token.cancel();
        EXPECT_EQ(driver->log, "start stop ");
        link.deliverFrame(clock.now()); // one that was on its way
        EXPECT_EQ(frames.size(), 1u);
        token = link.request([&](Instant frameTime) { frames.push_back(frameTime); });
    }
    EXPECT_EQ(driver->log, "start stop start stop ");
    clock.advance(17ms);
    EXPECT_EQ(frames.size(), 2u) << "the run loop goes on";
}

TEST(DisplayLink, DoesNotStopTheWindowSystemBetweenTwoAnimationsThatFollowEachOther)
{
    VirtualClock clock;
    auto& link = DisplayLink::shared();
    auto driver = std::make_shared<RecordingDriver>();
    DriverInPlace inPlace(driver);
    Token token;
    token = link.request([&](Instant) {
        token.cancel();
        token = link.request([](Instant) { });
    });
    link.deliverFrame(clock.now());
    EXPECT_EQ(driver->log, "start ");
}

TEST(DisplayLink, ComesBackAfterAVirtualClockTookItsFrameAway)
{
    auto& link = DisplayLink::shared();
    Token leaked;
    {
        VirtualClock clock;
        leaked = link.request([](Instant) { });
    }
    VirtualClock clock;
    int frames = 0;
    auto token = link.request([&](Instant) { ++frames; });
    clock.advance(17ms);
    EXPECT_EQ(frames, 1);
}

} // namespace
} // namespace platform
