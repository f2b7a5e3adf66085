// SPDX-License-Identifier: MIT
#include "introspect/probes.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/foundation/ProcessInfo.h"

#include <gtest/gtest.h>

namespace introspect {

using Outcome = IntrospectionPlatformViewController::Outcome;

namespace {

IntrospectionAttempt counting(int& attempts, Outcome outcome)
{
    return [&attempts, outcome](IntrospectionPlatformViewController&) {
        ++attempts;
        return outcome;
    };
}

} // namespace

TEST(Probes, TryOnceMoreFromTheMainQueueOnSystemsBefore14)
{
    for (int major : {13, 14, 17}) {
        const platform::SystemVersionOverride system({major, 7, 0});
        platform::VirtualClock clock;
        int attempts = 0;
        const auto probe = makeProbe({}, counting(attempts, Outcome::failed));
        EXPECT_EQ(attempts, 0) << major << ", never at once";
        clock.settle();
        clock.advance(std::chrono::seconds(1));
        EXPECT_EQ(attempts, major == 13 ? 1 : 0) << major;
    }
}

TEST(Probes, AreNotKeptAliveByTheMainQueueNorByThemselves)
{
    const platform::SystemVersionOverride system({13, 0, 0});
    platform::VirtualClock clock;
    int attempts = 0;
    auto probe = makeProbe({}, counting(attempts, Outcome::failed));
    const std::weak_ptr watched = probe;
    probe.reset();
    EXPECT_TRUE(watched.expired());
    clock.settle();
    EXPECT_EQ(attempts, 0);
}

TEST(Probes, GoOnWithTheLatestDescriptionUntilTheyHaveSucceeded)
{
    int attempts[3] = {};
    const auto probe = makeProbe({}, counting(attempts[0], Outcome::failed));
    for (int next : {1, 2, 2}) {
        probe->runHandler();
        renewProbe(*probe, counting(attempts[next], Outcome::succeeded));
    }
    EXPECT_EQ(std::to_array(attempts), (std::array{1, 1, 0}));
}

} // namespace introspect
