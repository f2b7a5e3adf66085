// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionPlatformViewController.h"

#include "introspect/IntrospectionMarkers.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UIViewController;
using Outcome = IntrospectionPlatformViewController::Outcome;

namespace {

// Fails `failures` times, then succeeds; counts its runs.
IntrospectionPlatformViewController::Handler succeedsAfter(int failures, int& runs)
{
    return [failures, &runs] { return ++runs > failures ? Outcome::succeeded : Outcome::failed; };
}

} // namespace

TEST(IntrospectionProbe, RunsItsHandlerAtEachEventOfItsLifeUntilItSucceeds)
{
    int runs = 0;
    const auto probe = IntrospectionPlatformViewController::make({}, succeedsAfter(3, runs));
    const auto host = std::make_shared<UIViewController>();
    host->addChild(probe);
    EXPECT_EQ(runs, 0);
    probe->loadViewIfNeeded();
    EXPECT_EQ(runs, 1) << "viewDidLoad";
    probe->didMove(host.get());
    EXPECT_EQ(runs, 2) << "didMove(toParent:)";
    probe->viewDidLayoutSubviews();
    EXPECT_EQ(runs, 3) << "viewDidLayoutSubviews";
    probe->viewDidAppear(platform::Animated::no);
    EXPECT_EQ(runs, 4) << "viewDidAppear";
    EXPECT_FALSE(probe->hasHandler());
    probe->replaceHandler(succeedsAfter(0, runs)); // too late: the probe is done for its life
    probe->runHandler();
    EXPECT_EQ(runs, 4);
}

TEST(IntrospectionProbe, DoesNotRunItsHandlerInsideOfItself)
{
    int runs = 0;
    std::weak_ptr<IntrospectionPlatformViewController> itself;
    const auto probe = IntrospectionPlatformViewController::make({}, [&] {
        ++runs;
        itself.lock()->viewDidLayoutSubviews(); // a customisation that lays out
        return Outcome::failed;
    });
    itself = probe;
    probe->runHandler();
    EXPECT_EQ(runs, 1);
    probe->runHandler();
    EXPECT_EQ(runs, 2);
}

TEST(IntrospectionProbe, MayGoAwayWhileItsHandlerRuns)
{
    std::shared_ptr<IntrospectionPlatformViewController> probe;
    probe = IntrospectionPlatformViewController::make({}, [&probe] {
        probe.reset();
        return Outcome::succeeded;
    });
    probe->runHandler();
    EXPECT_EQ(probe, nullptr);
}

TEST(IntrospectionProbe, MarksItselfAndItsViewAndIsKeptAliveByNeither)
{
    auto probe = IntrospectionPlatformViewController::make({}, {});
    EXPECT_TRUE(isIntrospectionPlatformEntity(*probe));
    const auto view = probe->view();
    EXPECT_TRUE(isIntrospectionPlatformEntity(*view));
    const auto* reference = view->associatedObject<std::weak_ptr<IntrospectionPlatformViewController>>(
        introspectionControllerKey);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->lock(), probe);
    probe.reset();
    EXPECT_TRUE(reference->expired());
}

} // namespace introspect
