// SPDX-License-Identifier: MIT
// Controllers that are made of other controllers.
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPresentationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"

#include <gtest/gtest.h>

namespace platform {

namespace {

using Controllers = std::vector<std::shared_ptr<UIViewController>>;
using Column = UISplitViewController::Column;

// Writes down what it is told.
struct Diary : UIViewController {
    std::string entries;
    void willMove(UIViewController* toParent) override { entries += toParent ? "willMove " : "willLeave "; }
    void didMove(UIViewController* toParent) override { entries += toParent ? "didMove " : "didLeave "; }
    void viewDidAppear(Animated) override { entries += "didAppear "; }
    void viewDidDisappear(Animated) override { entries += "didDisappear "; }
};

std::shared_ptr<Diary> page()
{
    return std::make_shared<Diary>();
}

std::vector<std::shared_ptr<UIView>> viewsOf(const Controllers& controllers)
{
    std::vector<std::shared_ptr<UIView>> views;
    for (const auto& controller : controllers)
        views.push_back(controller->view());
    return views;
}

} // namespace

TEST(UINavigationController, ShowsTheTopOfItsStackFillingItself)
{
    const auto first = page();
    const auto second = page();
    const auto navigation = UINavigationController::make(first);
    navigation->view()->setFrame(CGRect::make(0, 0, 300, 200));
    EXPECT_EQ(navigation->view()->subviews(), viewsOf({first}));
    navigation->pushViewController(second);
    EXPECT_EQ(navigation->view()->subviews(), viewsOf({second}));
    EXPECT_EQ(second->view()->frame(), CGRect::make(0, 0, 300, 200));
    navigation->view()->setFrame(CGRect::make(0, 0, 100, 80));
    EXPECT_EQ(second->view()->frame().size, (CGSize{100, 80}));
    EXPECT_EQ(navigation->popViewController(), second);
    EXPECT_EQ(navigation->view()->subviews(), viewsOf({first}));
    EXPECT_EQ(first->view()->frame().size, (CGSize{100, 80}));
}

TEST(UINavigationController, KeepsItsRoot)
{
    const auto root = page();
    const auto navigation = UINavigationController::make(root);
    EXPECT_EQ(navigation->popViewController(), nullptr);
    EXPECT_TRUE(navigation->popToRootViewController().empty());
    const auto second = page();
    const auto third = page();
    navigation->setViewControllers({root, second, third});
    EXPECT_EQ(navigation->popToRootViewController(), (Controllers{second, third}));
    EXPECT_EQ(navigation->viewControllers(), Controllers{root});
    EXPECT_EQ(std::make_shared<UINavigationController>()->popViewController(), nullptr);
}

TEST(UINavigationController, TellsControllersThatComeAndGoAndThoseAlone)
{
    const auto stays = page();
    const auto goes = page();
    const auto comes = page();
    const auto navigation = std::make_shared<UINavigationController>();
    navigation->setViewControllers({stays, goes});
    stays->entries.clear();
    goes->entries.clear();
    navigation->setViewControllers({comes, stays});
    EXPECT_EQ(stays->entries, "");
    EXPECT_EQ(goes->entries, "willLeave didLeave ");
    EXPECT_EQ(comes->entries, "willMove didMove ");
    EXPECT_EQ(goes->parent(), nullptr);
    EXPECT_EQ(comes->parent(), navigation);
}

TEST(UINavigationController, SendsAppearanceToWhatIsSeenAlone)
{
    const auto root = page();
    const auto top = page();
    const auto navigation = UINavigationController::make(root);
    const auto window = std::make_shared<UIWindow>(CGRect::make(0, 0, 300, 200));
    window->setRootViewController(navigation);
    window->showOffscreen();
    EXPECT_EQ(root->entries, "willMove didMove didAppear ");
    root->entries.clear();
    navigation->pushViewController(top);
    window->layoutNow(); // what came has appeared once it is laid out
    EXPECT_EQ(root->entries, "didDisappear ");
    EXPECT_EQ(top->entries, "willMove didMove didAppear ");
}

TEST(UINavigationController, DoesNotLoadViewsBeforeItsOwnIsAskedFor)
{
    const auto root = page();
    const auto navigation = UINavigationController::make(root);
    navigation->pushViewController(page());
    EXPECT_FALSE(root->isViewLoaded());
    navigation->loadViewIfNeeded();
    EXPECT_FALSE(root->isViewLoaded()); // it is not on top
    EXPECT_TRUE(navigation->topViewController()->isViewLoaded());
}

TEST(UINavigationControllerDeathTest, RefusesAControllerThatIsOnTheStack)
{
    const auto root = page();
    const auto navigation = UINavigationController::make(root);
    EXPECT_DEATH(navigation->pushViewController(root), "contained twice");
    EXPECT_DEATH(navigation->pushViewController(nullptr), "null");
}

TEST(UITabBarController, ShowsTheSelectedTabAlone)
{
    const auto first = page();
    const auto second = page();
    const auto tabs = std::make_shared<UITabBarController>();
    EXPECT_EQ(tabs->selectedViewController(), nullptr);
    tabs->loadViewIfNeeded();
    tabs->setViewControllers({first, second});
    EXPECT_EQ(tabs->view()->subviews(), viewsOf({first}));
    tabs->setSelectedIndex(1);
    EXPECT_EQ(tabs->view()->subviews(), viewsOf({second}));
    EXPECT_EQ(tabs->children(), (Controllers{first, second}));
}

TEST(UITabBarController, KeepsTheSelectionWhenTabsChange)
{
    const auto a = page();
    const auto b = page();
    const auto c = page();
    struct Case {
        const char* name;
        Controllers before;
        std::size_t selected;
        Controllers after;
        std::size_t expected;
    };
    const Case cases[] = {
        {"it moved", {a, b, c}, 2, {c, a}, 0},
        {"it left, its place is there", {a, b, c}, 1, {a, c}, 1},
        {"its place left too", {a, b, c}, 2, {a}, 0},
        {"all left", {a, b}, 1, {}, 0},
    };
    for (const auto& test : cases) {
        const auto tabs = std::make_shared<UITabBarController>();
        tabs->setViewControllers(test.before);
        tabs->setSelectedIndex(test.selected);
        tabs->setViewControllers(test.after);
        EXPECT_EQ(tabs->selectedIndex(), test.expected) << test.name;
        const auto expected = test.after.empty() ? nullptr : test.after[test.expected];
        EXPECT_EQ(tabs->selectedViewController(), expected) << test.name;
        tabs->setViewControllers({});
    }
    EXPECT_DEATH(std::make_shared<UITabBarController>()->setSelectedIndex(0), "does not exist");
}

TEST(UISplitViewController, ShowsBothColumnsWhereThereIsRoom)
{
    const auto list = page();
    const auto detail = page();
    const auto split = std::make_shared<UISplitViewController>();
    split->setViewController(detail, Column::secondary);
    split->setViewController(list, Column::primary);
    struct Case {
        const char* name;
        CGFloat width;
        UISemanticContentAttribute direction;
        std::optional<CGRect> list;
        CGRect detail;
    };
    constexpr auto left = UISemanticContentAttribute::forceLeftToRight;
    constexpr auto right = UISemanticContentAttribute::forceRightToLeft;
    const Case cases[] = {
        {"wide", 1000, left, CGRect::make(0, 0, 320, 400), CGRect::make(320, 0, 680, 400)},
        {"just wide enough", 600, left, CGRect::make(0, 0, 240, 400), CGRect::make(240, 0, 360, 400)},
        {"right to left", 1000, right, CGRect::make(680, 0, 320, 400), CGRect::make(0, 0, 680, 400)},
        {"narrow", 599, left, std::nullopt, CGRect::make(0, 0, 599, 400)},
        {"wide again", 700, left, CGRect::make(0, 0, 280, 400), CGRect::make(280, 0, 420, 400)},
    };
    for (const auto& test : cases) {
        split->view()->setSemanticContentAttribute(test.direction);
        split->view()->setFrame(CGRect::make(0, 0, test.width, 400));
        split->view()->setNeedsLayout();
        split->view()->layoutIfNeeded();
        EXPECT_EQ(split->isCollapsed(), !test.list) << test.name;
        EXPECT_EQ(list->view()->superview() == split->view(), test.list.has_value()) << test.name;
        if (test.list) {
            EXPECT_EQ(list->view()->frame(), *test.list) << test.name;
        }
        EXPECT_EQ(detail->view()->frame(), test.detail) << test.name;
    }
}

TEST(UISplitViewController, ShowsTheOnlyColumnThatIsThere)
{
    const auto list = page();
    const auto split = std::make_shared<UISplitViewController>();
    split->view()->setFrame(CGRect::make(0, 0, 1000, 400));
    split->setViewController(list, Column::primary);
    EXPECT_EQ(list->view()->frame().size.width, 1000);
    split->setViewController(nullptr, Column::primary);
    EXPECT_TRUE(split->view()->subviews().empty());
    EXPECT_EQ(list->parent(), nullptr);
}

TEST(UIViewController, FindsTheNearestContainersAboveIt)
{
    const auto inner = page();
    const auto navigation = UINavigationController::make(inner);
    const auto split = std::make_shared<UISplitViewController>();
    const auto tabs = std::make_shared<UITabBarController>();
    const auto outer = UINavigationController::make(tabs);
    split->setViewController(navigation, Column::secondary);
    tabs->setViewControllers({split});
    EXPECT_EQ(inner->navigationController(), navigation);
    EXPECT_EQ(navigation->navigationController(), outer); // not itself
    EXPECT_EQ(inner->splitViewController(), split);
    EXPECT_EQ(inner->tabBarController(), tabs);
    EXPECT_EQ(outer->navigationController(), nullptr);
    EXPECT_EQ(outer->tabBarController(), nullptr); // a child is not above
}

TEST(UIPresentationController, AnswersForThePresentedControllerAndWhatIsInside)
{
    const auto inner = page();
    const auto presented = UINavigationController::make(inner);
    const auto presenter = page();
    auto presentation = std::make_shared<UIPresentationController>(presented, presenter);
    EXPECT_EQ(inner->presentationController(), nullptr);
    presentation->beginPresentation();
    EXPECT_EQ(inner->presentationController(), presentation);
    EXPECT_EQ(presenter->presentationController(), nullptr);
    EXPECT_EQ(presentation->presentingViewController(), presenter);
    EXPECT_EQ(presentation->presentedView(), presented->view());
    presentation->endPresentation();
    EXPECT_EQ(inner->presentationController(), nullptr);
}

} // namespace platform
