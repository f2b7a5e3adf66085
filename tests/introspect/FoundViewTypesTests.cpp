// SPDX-License-Identifier: MIT
// View types find what the modified view stands in.
#include "introspect/ViewTypes.h"
#include "introspect/introspect.h"
#include "platform/swiftui/ScrollView.h"
#include "platform/swiftui/Text.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"
#include "tests/introspect/Representables.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UIView;
using platform::UIViewController;

namespace {

template <class Entity>
auto into(std::shared_ptr<Entity>& found)
{
    return [&found](Entity& entity) { found = std::static_pointer_cast<Entity>(entity.shared_from_this()); };
}

// What `type` finds from inside of surroundings that the controllers and views around it make.
template <class ViewType, class Entity, class Surround>
std::shared_ptr<Entity>
foundInside(ViewType type, const PlatformViewVersion<iOSVersion, ViewType, Entity>& v17,
            const Surround& surround, std::optional<IntrospectionScope> scope = std::nullopt)
{
    std::shared_ptr<Entity> found;
    Screen screen(shown<UIView>() | introspect(type, iOS(v17), scope, into(found)), surround);
    return found;
}

} // namespace

TEST(FoundViewTypes, FindThePresentationThatTheModifiedViewStandsIn)
{
    const auto present = [&]<class Presentation>(std::shared_ptr<Presentation>& presentation) {
        return [&presentation](const std::shared_ptr<UIViewController>& host) {
            presentation = std::make_shared<Presentation>(host);
            presentation->beginPresentation();
            return host;
        };
    };
    std::shared_ptr<platform::UISheetPresentationController> asSheet;
    std::shared_ptr<platform::UIPopoverPresentationController> asPopover;
    std::shared_ptr<platform::UIPresentationController> asCover;
    EXPECT_EQ(foundInside(sheet, sheet.iOS.v17, present(asSheet)), asSheet);
    EXPECT_EQ(foundInside(sheet, sheet.iOS.asSheet.v17, present(asSheet)), asSheet);
    EXPECT_EQ(foundInside(sheet, sheet.iOS.asSheet.v17, present(asCover)), nullptr);
    EXPECT_EQ(foundInside(fullScreenCover, fullScreenCover.iOS.v17, present(asCover)), asCover);
    EXPECT_EQ(foundInside(popover, popover.iOS.v17, present(asPopover)), asPopover);
    EXPECT_NE(asPopover, nullptr);
}

TEST(FoundViewTypes, FindTheCellThatTheModifiedViewStandsIn)
{
    const auto cell = std::make_shared<platform::UICollectionViewCell>();
    const auto collection = std::make_shared<platform::UICollectionView>();
    const auto inCell = [&](const std::shared_ptr<UIViewController>& host) {
        const auto root = std::make_shared<UIViewController>();
        root->view()->addSubview(collection);
        collection->addSubview(cell);
        root->addChild(host);
        cell->addSubview(host->view());
        host->didMove(root.get());
        return root;
    };
    EXPECT_EQ(foundInside(listCell, listCell.iOS.v17, inCell), cell);
    EXPECT_EQ(foundInside(list, list.iOS.v17, inCell, IntrospectionScope::ancestor), collection);
    EXPECT_EQ(foundInside(list, list.iOS.v17, inCell), nullptr); // it is not what the view is made of
}

TEST(FoundViewTypes, FindTheContainersThatTheModifiedViewStandsIn)
{
    std::shared_ptr<platform::UINavigationController> navigation;
    std::shared_ptr<platform::UISplitViewController> split;
    std::shared_ptr<platform::UITabBarController> tabs;
    const auto inAll = [&](const std::shared_ptr<UIViewController>& host) {
        navigation = platform::UINavigationController::make(host);
        split = std::make_shared<platform::UISplitViewController>();
        split->setViewController(navigation, platform::UISplitViewController::Column::secondary);
        tabs = std::make_shared<platform::UITabBarController>();
        tabs->setViewControllers({split});
        return tabs;
    };
    constexpr auto inAncestors = IntrospectionScope::ancestor;
    EXPECT_EQ(foundInside(navigationStack, navigationStack.iOS.v17, inAll, inAncestors), navigation);
    EXPECT_EQ(foundInside(navigationSplitView, navigationSplitView.iOS.v17, inAll, inAncestors), split);
    EXPECT_EQ(foundInside(tabView, tabView.iOS.v17, inAll, inAncestors), tabs);
    EXPECT_EQ(foundInside(tabView, tabView.iOS.v17, inAll), nullptr);
}

// The window is there only once the view appears: the probe finds it at a later event than the others.
TEST(FoundViewTypes, FindTheWindow)
{
    std::shared_ptr<platform::UIWindow> found;
    Screen screen(shown<UIView>() | introspect(window, iOS(window.iOS.v17), into(found)));
    EXPECT_EQ(found, screen.window);
}

TEST(FoundViewTypes, FindTheControllerOfTheViewElseTheOneAround)
{
    std::shared_ptr<UIViewController> found;
    const auto any = iOS(startingAt(viewController.iOS.v13));
    Screen(shown<platform::UITabBarController>() | introspect(viewController, any, into(found)));
    EXPECT_NE(std::dynamic_pointer_cast<platform::UITabBarController>(found), nullptr);
    found.reset();
    Screen screen(shown<UIView>() | introspect(viewController, any, into(found)));
    EXPECT_EQ(found, screen.host);
}

TEST(FoundViewTypes, FindAScrollViewFromOutsideAndFromInside)
{
    std::shared_ptr<platform::UIScrollView> fromOutside, fromInside;
    const auto any = iOS(startingAt(scrollView.iOS.v13));
    Screen screen(
        platform::ScrollView(platform::Text{"line"}
                             | introspect(scrollView, any, IntrospectionScope::ancestor, into(fromInside)))
        | introspect(scrollView, any, into(fromOutside)));
    ASSERT_NE(fromOutside, nullptr);
    EXPECT_EQ(fromOutside->window(), screen.window);
    EXPECT_EQ(fromInside, fromOutside);
}

} // namespace introspect
