// SPDX-License-Identifier: MIT
// Controllers that are made of other controllers.
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UINavigationBar.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"
#include "tests/platform/uikit/TouchTestSupport.h"

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

// What a container shows besides its bar.
std::vector<std::shared_ptr<UIView>> pagesOf(UIViewController& container)
{
    auto views = container.view()->subviews();
    std::erase_if(views, [](const auto& view) {
        return dynamic_cast<UINavigationBar*>(view.get()) || dynamic_cast<UITabBar*>(view.get());
    });
    return views;
}

std::vector<std::shared_ptr<UIView>> viewsOf(const Controllers& controllers)
{
    std::vector<std::shared_ptr<UIView>> views;
    for (const auto& controller : controllers)
        views.push_back(controller->view());
    return views;
}

} // namespace

TEST(UINavigationController, ShowsTheTopOfItsStackBelowItsBarAndLoadsNoOther)
{
    const auto first = page(), second = page();
    const auto navigation = UINavigationController::make(first);
    navigation->pushViewController(second);
    navigation->view()->setFrame(CGRect::make(0, 0, 300, 200));
    navigation->view()->layoutIfNeeded();
    EXPECT_FALSE(first->isViewLoaded());
    EXPECT_EQ(pagesOf(*navigation), viewsOf({second}));
    EXPECT_EQ(second->view()->frame(), CGRect::make(0, 44, 300, 156));
    navigation->view()->setFrame(CGRect::make(0, 0, 100, 80));
    navigation->view()->layoutIfNeeded();
    EXPECT_EQ(second->view()->frame().size, (CGSize{100, 36}));
    EXPECT_EQ(navigation->popViewController(), second);
    EXPECT_EQ(pagesOf(*navigation), viewsOf({first}));
    navigation->setNavigationBarHidden(true);
    EXPECT_EQ(first->view()->frame().size, (CGSize{100, 80}));
}

// What slides is a picture: controllers hear of each step once, and at once.
TEST(UINavigationController, SlidesBetweenPagesAndCanBeInterrupted)
{
    Stage stage({300, 200});
    const auto root = page(), second = page(), third = page();
    const auto navigation = UINavigationController::make(root);
    stage.window->setRootViewController(navigation);
    stage.window->showOffscreen();
    navigation->pushViewController(second, Animated::yes);
    stage.clock.advance(100ms);
    const auto way = second->view()->presentationTransform().tx;
    EXPECT_GT(way, 0);
    EXPECT_LT(way, 300);
    EXPECT_EQ(pagesOf(*navigation).size(), 2u);
    navigation->pushViewController(third, Animated::yes);
    EXPECT_EQ(second->view()->presentationTransform(), CGAffineTransform{});
    EXPECT_EQ(std::exchange(root->entries, ""), "willMove didMove didAppear didDisappear ");
    const auto alternate = [&](UIKeyCode key) {
        return stage.window->sendPress({.key = key, .modifiers = {UIKeyModifierFlags::alternate}});
    };
    EXPECT_FALSE(alternate(UIKeyCode::right));
    EXPECT_TRUE(alternate(UIKeyCode::left));
    stage.clock.advance(1s);
    EXPECT_EQ(pagesOf(*navigation), viewsOf({second}));
    EXPECT_EQ(third->entries, "willMove didMove willLeave didDisappear didLeave ");
    navigation->navigationBar()->backButton()->performPrimaryAction();
    stage.clock.advance(1s);
    EXPECT_EQ(pagesOf(*navigation), viewsOf({root}));
    EXPECT_TRUE(navigation->navigationBar()->backButton()->isHidden());
}

TEST(UINavigationController, KeepsItsRootAndHoldsNoControllerTwice)
{
    const auto root = page(), second = page(), third = page();
    const auto navigation = UINavigationController::make(root);
    EXPECT_EQ(navigation->popViewController(), nullptr);
    EXPECT_TRUE(navigation->popToRootViewController().empty());
    navigation->setViewControllers({root, second, third});
    EXPECT_EQ(navigation->popToRootViewController(), (Controllers{second, third}));
    EXPECT_EQ(navigation->viewControllers(), Controllers{root});
    EXPECT_EQ(std::make_shared<UINavigationController>()->popViewController(), nullptr);
    EXPECT_DEATH(navigation->pushViewController(root), "contained twice");
}

TEST(UINavigationController, TellsControllersThatComeAndGoAndThoseAlone)
{
    const auto stays = page(), goes = page(), comes = page();
    const auto navigation = UINavigationController::make(goes);
    const auto window = std::make_shared<UIWindow>(CGRect::make(0, 0, 300, 200));
    window->setRootViewController(navigation);
    window->showOffscreen();
    EXPECT_EQ(std::exchange(goes->entries, ""), "willMove didMove didAppear ");
    navigation->setViewControllers({goes, stays});
    window->layoutNow(); // what came has appeared once it is laid out
    EXPECT_EQ(std::exchange(goes->entries, ""), "didDisappear ");
    EXPECT_EQ(std::exchange(stays->entries, ""), "willMove didMove didAppear ");
    navigation->setViewControllers({comes, stays});
    EXPECT_EQ(stays->entries, "");
    EXPECT_EQ(goes->entries, "willLeave didLeave ");
    EXPECT_EQ(comes->entries, "willMove didMove ");
    EXPECT_EQ(goes->parent(), nullptr);
    EXPECT_EQ(comes->parent(), navigation);
}

TEST(UITabBarController, ShowsTheSelectedTabAloneAndKeepsItWhenTabsChange)
{
    const auto a = page(), b = page(), c = page();
    const std::tuple<const char*, Controllers, std::size_t, Controllers, std::size_t> cases[] = {
        {"it moved", {a, b, c}, 2, {c, a}, 0},
        {"it left, its place is there", {a, b, c}, 1, {a, c}, 1},
        {"its place left too", {a, b, c}, 2, {a}, 0},
        {"all left", {a, b}, 1, {}, 0},
    };
    for (const auto& [name, before, selected, after, expected] : cases) {
        SCOPED_TRACE(name);
        const auto tabs = std::make_shared<UITabBarController>();
        tabs->loadViewIfNeeded();
        tabs->setViewControllers(before);
        tabs->setSelectedIndex(selected);
        EXPECT_EQ(pagesOf(*tabs), viewsOf({before[selected]}));
        tabs->setViewControllers(after);
        EXPECT_EQ(tabs->selectedIndex(), expected);
        EXPECT_EQ(pagesOf(*tabs), after.empty() ? viewsOf({}) : viewsOf({after[expected]}));
        tabs->setViewControllers({});
    }
    EXPECT_DEATH(std::make_shared<UITabBarController>()->setSelectedIndex(0), "does not exist");
}

TEST(UITabBarController, IsOperatedByItsBar)
{
    for (const auto direction :
         {UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft}) {
        UITraitCollection traits;
        traits.layoutDirection = direction;
        const auto isMirrored = direction == UIUserInterfaceLayoutDirection::rightToLeft;
        Stage stage({300, 200}, traits);
        const auto tabs = std::make_shared<UITabBarController>();
        tabs->setViewControllers({page(), page(), page()});
        stage.window->setRootViewController(tabs);
        stage.window->showOffscreen();
        EXPECT_EQ(tabs->selectedViewController()->view()->frame().size, (CGSize{300, 150}));
        std::vector<std::size_t> chosen;
        tabs->onSelect = [&](std::size_t index) { chosen.push_back(index); };
        Finger(stage, UITouchType::mouse).tap({isMirrored ? 50.0 : 250.0, 175});
        EXPECT_EQ(tabs->selectedIndex(), 2u);
        tabs->tabBar()->subviews()[2]->becomeFirstResponder();
        const auto press = [&](UIKeyCode key) { stage.window->sendPress({.key = key}); };
        press(isMirrored ? UIKeyCode::right : UIKeyCode::left);
        press(isMirrored ? UIKeyCode::left : UIKeyCode::right);
        press(isMirrored ? UIKeyCode::left : UIKeyCode::right); // past the last
        EXPECT_EQ(chosen, (std::vector<std::size_t>{2, 1, 2}));
    }
}

TEST(UISplitViewController, ShowsBothColumnsWhereThereIsRoom)
{
    const auto list = page(), detail = page();
    const auto split = std::make_shared<UISplitViewController>();
    split->setViewController(detail, Column::secondary);
    split->setViewController(list, Column::primary);
    using Direction = UISemanticContentAttribute;
    constexpr auto left = Direction::forceLeftToRight;
    constexpr auto right = Direction::forceRightToLeft;
    const std::tuple<const char*, CGFloat, Direction, std::optional<CGRect>, CGRect> cases[] = {
        {"wide", 1000, left, CGRect::make(0, 0, 320, 400), CGRect::make(321, 0, 679, 400)},
        {"just wide enough", 600, left, CGRect::make(0, 0, 240, 400), CGRect::make(241, 0, 359, 400)},
        {"right to left", 1000, right, CGRect::make(680, 0, 320, 400), CGRect::make(0, 0, 679, 400)},
        {"narrow", 599, left, std::nullopt, CGRect::make(0, 0, 599, 400)},
        {"wide again", 700, left, CGRect::make(0, 0, 280, 400), CGRect::make(281, 0, 419, 400)},
    };
    for (const auto& [name, width, direction, listFrame, detailFrame] : cases) {
        SCOPED_TRACE(name);
        split->view()->setSemanticContentAttribute(direction);
        split->view()->setFrame(CGRect::make(0, 0, width, 400));
        split->view()->setNeedsLayout();
        split->view()->layoutIfNeeded();
        EXPECT_EQ(split->isCollapsed(), !listFrame);
        EXPECT_EQ(list->view()->superview() == split->view(), listFrame.has_value());
        EXPECT_EQ(list->view()->frame(), listFrame.value_or(list->view()->frame()));
        EXPECT_EQ(detail->view()->frame(), detailFrame);
    }
    split->setViewController(nullptr, Column::secondary);
    EXPECT_EQ(list->view()->frame().size.width, 700); // the only one takes it all
    EXPECT_EQ(detail->parent(), nullptr);
}

} // namespace platform
