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
    struct Case {
        platform::OperatingSystemVersion system;
        int attempts;
    };
    const Case cases[] = {{{13, 0, 0}, 1}, {{13, 7, 0}, 1}, {{14, 0, 0}, 0}, {{17, 0, 0}, 0}};
    for (const auto& test : cases) {
        const platform::SystemVersionOverride system(test.system);
        platform::VirtualClock clock;
        int attempts = 0;
        const auto probe = makeProbe({}, counting(attempts, Outcome::failed));
        EXPECT_EQ(attempts, 0) << test.system.string(); // never at once
        clock.settle();
        EXPECT_EQ(attempts, test.attempts) << test.system.string();
        clock.advance(std::chrono::seconds(1));
        EXPECT_EQ(attempts, test.attempts) << test.system.string();
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
    int first = 0;
    int second = 0;
    int third = 0;
    const auto probe = makeProbe({}, counting(first, Outcome::failed));
    probe->runHandler();
    renewProbe(*probe, counting(second, Outcome::succeeded));
    probe->runHandler();
    renewProbe(*probe, counting(third, Outcome::succeeded));
    probe->runHandler();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(third, 0);
}

} // namespace introspect
