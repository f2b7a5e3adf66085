// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionPlatformViewController.h"

#include "introspect/EntitySearch.h"
#include "introspect/IntrospectionMarkers.h"
#include "platform/uikit/UIWindow.h"
#include "tests/introspect/MarkedStage.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UIView;
using platform::UIViewController;
using Outcome = IntrospectionPlatformViewController::Outcome;

namespace {

// Fails `failures` times, then succeeds; counts its runs.
IntrospectionPlatformViewController::Handler succeedsAfter(int failures, int& runs)
{
    return [failures, &runs] { return ++runs > failures ? Outcome::succeeded : Outcome::failed; };
}

constexpr int never = 1'000'000;

} // namespace

TEST(IntrospectionProbe, RunsItsHandlerAtEachEventOfItsLifeUntilItSucceeds)
{
    int runs = 0;
    const auto probe = IntrospectionPlatformViewController::make({}, succeedsAfter(never, runs));
    const auto host = std::make_shared<UIViewController>();
    EXPECT_EQ(runs, 0);
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
    EXPECT_TRUE(probe->hasHandler());
}

TEST(IntrospectionProbe, NeverRunsItsHandlerAgainAfterASuccess)
{
    int runs = 0;
    const auto probe = IntrospectionPlatformViewController::make({}, succeedsAfter(1, runs));
    probe->loadViewIfNeeded();
    EXPECT_TRUE(probe->hasHandler());
    probe->didMove(nullptr);
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(probe->hasHandler());
    probe->viewDidLayoutSubviews();
    probe->viewDidAppear(platform::Animated::no);
    probe->replaceHandler(succeedsAfter(0, runs)); // too late: the probe is done for its life
    probe->runHandler();
    EXPECT_EQ(runs, 2);
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

TEST(IntrospectionProbe, TakesALaterHandlerWhileNoneHasSucceeded)
{
    int first = 0;
    int second = 0;
    const auto probe = IntrospectionPlatformViewController::make({}, succeedsAfter(never, first));
    probe->loadViewIfNeeded();
    probe->replaceHandler(succeedsAfter(0, second));
    probe->viewDidLayoutSubviews();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_FALSE(probe->hasHandler());
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

TEST(IntrospectionProbe, LeavesTheStatusBarToItsParent)
{
    struct Light : UIViewController {
        platform::UIStatusBarStyle preferredStatusBarStyle() const override
        {
            return platform::UIStatusBarStyle::lightContent;
        }
    };
    const auto host = std::make_shared<Light>();
    const auto probe = IntrospectionPlatformViewController::make({}, {});
    EXPECT_EQ(probe->preferredStatusBarStyle(), platform::UIStatusBarStyle::automatic);
    host->addChild(probe);
    EXPECT_EQ(probe->preferredStatusBarStyle(), platform::UIStatusBarStyle::lightContent);
}

// The content is mounted before the probe, so the first event at which both stand in one hierarchy finds it.
TEST(IntrospectionProbe, FindsItsTargetInAWindowThatIsShown)
{
    std::weak_ptr<IntrospectionPlatformViewController> itself;
    std::shared_ptr<UIView> found;
    MarkedStage stage([&] {
        found = receiverEntity<UIView>(*itself.lock());
        return found ? Outcome::succeeded : Outcome::failed;
    });
    itself = stage.probe;
    stage.addAnchor();
    const auto content = stage.addNew<UIView>();
    stage.probe->loadViewIfNeeded(); // too early
    EXPECT_EQ(found, nullptr);
    stage.host->addChild(stage.probe);
    stage.host->view()->addSubview(stage.probe->view());
    const auto window = std::make_shared<platform::UIWindow>(platform::CGRect::make(0, 0, 100, 100));
    window->setRootViewController(stage.host);
    window->showOffscreen();
    EXPECT_EQ(found, content);
    EXPECT_FALSE(stage.probe->hasHandler());
}

} // namespace introspect
