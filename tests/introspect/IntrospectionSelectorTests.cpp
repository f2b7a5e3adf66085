// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionSelector.h"

#include "introspect/ViewTypes/ProbeSelectors.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UISearchBar.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UIWindow.h"
#include "tests/introspect/MarkedStage.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UINavigationController;
using platform::UIScrollView;
using platform::UISearchBar;
using platform::UIView;
using platform::UIViewController;

namespace {

constexpr auto inReceiver = IntrospectionScope::receiver;
constexpr auto inAncestors = IntrospectionScope::ancestor;
constexpr IntrospectionScope inBoth{inReceiver, inAncestors};

// A stage whose probe stands in a navigation, split and tab controller, in a window.
struct Contained : MarkedStage {
    std::shared_ptr<UINavigationController> navigation = UINavigationController::make(host);
    std::shared_ptr<platform::UISplitViewController> split =
        std::make_shared<platform::UISplitViewController>();
    std::shared_ptr<platform::UITabBarController> tabs = std::make_shared<platform::UITabBarController>();
    std::shared_ptr<platform::UIWindow> window =
        std::make_shared<platform::UIWindow>(platform::CGRect::make(0, 0, 800, 600));

    Contained()
    {
        addAnchor();
        addProbe();
        split->setViewController(navigation, platform::UISplitViewController::Column::secondary);
        tabs->setViewControllers({split});
        window->setRootViewController(tabs);
        window->showOffscreen();
    }
};

} // namespace

TEST(IntrospectionSelector, PrefersTheReceiverWhereBothScopesAreAskedFor)
{
    MarkedStage stage;
    const auto around = std::make_shared<UIScrollView>();
    around->addSubview(stage.host->view());
    stage.addAnchor();
    const auto content = stage.addNew<UIScrollView>();
    stage.addProbe();
    const auto selector = IntrospectionSelector<UIScrollView>::defaultSelector();
    EXPECT_EQ(selector.find(*stage.probe, inBoth), content);
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), content);
    EXPECT_EQ(selector.find(*stage.probe, inAncestors), around);
    EXPECT_EQ(selector.find(*stage.probe, {}), nullptr);
    content->removeFromSuperview();
    EXPECT_EQ(selector.find(*stage.probe, inBoth), around);
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), nullptr);
}

TEST(IntrospectionSelector, DoesNotSearchAncestorsOnceTheReceiverIsFound)
{
    int searches = 0;
    const auto probe = std::make_shared<UIViewController>();
    const auto found = std::make_shared<UIView>();
    const auto selector = IntrospectionSelector<UIView>::defaultSelector()
                              .withReceiverSelector([found](UIViewController&) { return found; })
                              .withAncestorSelector([&searches](UIViewController&) {
                                  ++searches;
                                  return nullptr;
                              });
    EXPECT_EQ(selector.find(*probe, inBoth), found);
    EXPECT_EQ(searches, 0);
    EXPECT_EQ(selector.find(*probe, inAncestors), nullptr);
    EXPECT_EQ(searches, 1);
}

TEST(IntrospectionSelector, TakesATargetFromTheEntityThatWasFound)
{
    MarkedStage stage;
    const auto navigation = std::make_shared<UINavigationController>();
    stage.addAnchor();
    stage.add(navigation);
    stage.addProbe();
    const auto top = IntrospectionSelector<UIViewController>::from<UINavigationController>(
        [](const std::shared_ptr<UINavigationController>& found) { return found->topViewController(); });
    EXPECT_EQ(top.find(*stage.probe, inReceiver), nullptr); // the entity is there, it has no target
    const auto root = std::make_shared<UIViewController>();
    navigation->pushViewController(root);
    EXPECT_EQ(top.find(*stage.probe, inReceiver), root);
}

TEST(IntrospectionSelector, ReplacesOneClosureAndKeepsTheOther)
{
    MarkedStage stage;
    stage.addAnchor();
    const auto content = stage.addNew<UIView>();
    stage.addProbe();
    const auto other = std::make_shared<UIView>();
    const auto standard = IntrospectionSelector<UIView>::defaultSelector();
    const auto replaced = standard.withAncestorSelector([other](UIViewController&) { return other; });
    EXPECT_EQ(replaced.find(*stage.probe, inReceiver), content);
    EXPECT_EQ(replaced.find(*stage.probe, inAncestors), other);
    EXPECT_EQ(standard.find(*stage.probe, inAncestors),
              stage.host->view()); // the original is a value of its own
}

TEST(ProbeSelectors, FindTheControllersAroundTheProbe)
{
    Contained stage;
    EXPECT_EQ(catalogue::navigationControllerSelector().find(*stage.probe, inAncestors), stage.navigation);
    EXPECT_EQ(catalogue::splitViewControllerSelector().find(*stage.probe, inAncestors), stage.split);
    EXPECT_EQ(catalogue::tabBarControllerSelector().find(*stage.probe, inAncestors), stage.tabs);
    // None of them is the receiver.
    EXPECT_EQ(catalogue::navigationControllerSelector().find(*stage.probe, inReceiver), nullptr);
    EXPECT_EQ(catalogue::splitViewControllerSelector().find(*stage.probe, inReceiver), nullptr);
    EXPECT_EQ(catalogue::tabBarControllerSelector().find(*stage.probe, inReceiver), nullptr);
}

TEST(ProbeSelectors, FindANavigationControllerThatIsTheModifiedView)
{
    MarkedStage stage;
    const auto around = UINavigationController::make(stage.host);
    stage.addAnchor();
    const auto own = stage.addNew<UINavigationController>();
    stage.addProbe();
    EXPECT_EQ(catalogue::navigationControllerSelector().find(*stage.probe, inReceiver), own);
    EXPECT_EQ(catalogue::navigationControllerSelector().find(*stage.probe, inAncestors), around);
}

TEST(ProbeSelectors, FindPresentationsOfTheirKind)
{
    MarkedStage stage;
    stage.addProbe();
    const auto plain = catalogue::presentationControllerSelector();
    const auto sheet = catalogue::sheetPresentationControllerSelector();
    const auto popover = catalogue::popoverPresentationControllerSelector();
    EXPECT_EQ(plain.find(*stage.probe, inBoth), nullptr);

    const auto asSheet = std::make_shared<platform::UISheetPresentationController>(stage.host);
    asSheet->beginPresentation();
    EXPECT_EQ(plain.find(*stage.probe, inAncestors), asSheet);
    EXPECT_EQ(sheet.find(*stage.probe, inAncestors), asSheet);
    EXPECT_EQ(popover.find(*stage.probe, inAncestors), nullptr);
    EXPECT_EQ(plain.find(*stage.probe, inReceiver), nullptr);

    auto asPopover = std::make_shared<platform::UIPopoverPresentationController>(stage.host);
    asPopover->beginPresentation();
    asSheet->endPresentation(); // it is over already: not this one's to end
    EXPECT_EQ(plain.find(*stage.probe, inAncestors), asPopover);
    EXPECT_EQ(popover.find(*stage.probe, inAncestors), asPopover);
    EXPECT_EQ(sheet.find(*stage.probe, inAncestors), nullptr);

    asPopover.reset();
    EXPECT_EQ(plain.find(*stage.probe, inBoth), nullptr);
}

TEST(ProbeSelectors, FindTheWindowAsReceiver)
{
    Contained stage;
    EXPECT_EQ(catalogue::windowSelector().find(*stage.probe, inReceiver), stage.window);
    MarkedStage apart;
    EXPECT_EQ(catalogue::windowSelector().find(*apart.probe, inReceiver), nullptr);
    EXPECT_FALSE(apart.probe->isViewLoaded());
    apart.addProbe();
    EXPECT_EQ(catalogue::windowSelector().find(*apart.probe, inBoth), nullptr);
}

TEST(ProbeSelectors, FindTheFirstSearchBarOfTheNavigationControllerAround)
{
    Contained stage;
    const auto selector = catalogue::searchBarSelector();
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), nullptr);

    const auto outside = std::make_shared<UISearchBar>();
    stage.window->insertSubview(outside, 0);
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), nullptr); // another part of the window has it

    const auto inside = std::make_shared<UISearchBar>();
    stage.navigation->view()->insertSubview(inside, 0);
    stage.add(std::make_shared<UISearchBar>()); // a later one
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), inside);
}

TEST(ProbeSelectors, FindTheFirstSearchBarOfTheWholeHierarchyOutsideOfNavigation)
{
    MarkedStage stage;
    const auto root = std::make_shared<UIView>();
    root->addSubview(stage.host->view());
    const auto bar = std::make_shared<UISearchBar>();
    root->addSubview(bar);
    EXPECT_EQ(catalogue::searchBarSelector().find(*stage.probe, inReceiver), nullptr); // not loaded
    stage.addProbe();
    EXPECT_EQ(catalogue::searchBarSelector().find(*stage.probe, inReceiver), bar);
}

} // namespace introspect
