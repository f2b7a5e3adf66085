// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionSelector.h"

#include "introspect/ViewTypes/ProbeSelectors.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UISearchBar.h"
#include "platform/uikit/UISheetPresentationController.h"
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
static_assert(inBoth.rawValue == 3 && (inBoth ^ inReceiver) == inAncestors
              && inBoth - inReceiver == inAncestors && (inBoth & inReceiver) == inReceiver
              && (inReceiver | inAncestors) == inBoth && IntrospectionScope() - inBoth == IntrospectionScope()
              && !inReceiver.contains(inBoth));

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

TEST(ProbeSelectors, FindPresentationsOfTheirKindWhileTheyLast)
{
    MarkedStage stage;
    stage.addProbe();
    const auto plain = catalogue::presentationControllerSelector();
    const auto sheet = catalogue::sheetPresentationControllerSelector();
    const auto popover = catalogue::popoverPresentationControllerSelector();
    EXPECT_EQ(plain.find(*stage.probe, inBoth), nullptr);
    const auto asSheet = std::make_shared<platform::UISheetPresentationController>(stage.host);
    asSheet->beginPresentation();
    EXPECT_EQ(plain.find(*stage.probe, inReceiver), nullptr);
    EXPECT_EQ(sheet.find(*stage.probe, inAncestors), asSheet);
    EXPECT_EQ(popover.find(*stage.probe, inAncestors), nullptr);
    auto asPopover = std::make_shared<platform::UIPopoverPresentationController>(stage.host);
    asPopover->beginPresentation();
    asSheet->endPresentation(); // it is over already: not this one's to end
    EXPECT_EQ(plain.find(*stage.probe, inAncestors), asPopover);
    EXPECT_EQ(sheet.find(*stage.probe, inAncestors), nullptr);
    asPopover.reset();
    EXPECT_EQ(plain.find(*stage.probe, inBoth), nullptr);
}

TEST(ProbeSelectors, FindTheFirstSearchBarOfTheNavigationControllerAroundElseOfTheHierarchy)
{
    MarkedStage stage;
    const auto root = std::make_shared<UIView>();
    root->addSubview(stage.host->view());
    const auto outside = std::make_shared<UISearchBar>();
    root->insertSubview(outside, 0);
    const auto selector = catalogue::searchBarSelector();
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), nullptr); // its view is not loaded
    EXPECT_EQ(catalogue::windowSelector().find(*stage.probe, inReceiver), nullptr);
    EXPECT_FALSE(stage.probe->isViewLoaded());
    stage.addProbe();
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), outside);
    EXPECT_EQ(catalogue::windowSelector().find(*stage.probe, inBoth), nullptr);

    const auto navigation = UINavigationController::make(stage.host);
    root->addSubview(navigation->view());
    navigation->view()->layoutIfNeeded();
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), nullptr); // another part of the hierarchy has it
    const auto inside = std::make_shared<UISearchBar>();
    navigation->view()->insertSubview(inside, 0);
    stage.addNew<UISearchBar>(); // a later one
    EXPECT_EQ(selector.find(*stage.probe, inReceiver), inside);
}

} // namespace introspect
