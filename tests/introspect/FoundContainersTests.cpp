// SPDX-License-Identifier: MIT
// Views that hold others are found as what the catalogue says they are, on each version of the system.
#include "platform/foundation/ProcessInfo.h"
#include "tests/introspect/Catalogue.h"
#include "tests/introspect/Representables.h"
#include "tests/introspect/Reruns.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

namespace introspect {

using namespace std::chrono_literals;
using platform::Text;

namespace {

// Which of the entities that the predicates are about was found, by the name of its class.
class Found {
public:
    template <class Entity>
    std::function<void(Entity&)> as(std::string_view name)
    {
        return [this, name](Entity& entity) {
            if (!entity_.lock())
                name_ = name;
            entity_ = entity.weak_from_this();
        };
    }
    const std::string& name() const { return name_; }

private:
    std::string name_;
    std::weak_ptr<const platform::NSObject> entity_;
};

// Shows the view for as long as it takes that everything has come.
void show(platform::View auto root)
{
    Screen screen(std::move(root));
    for (int turn = 0; turn < 4; ++turn) {
        screen.settle();
        screen.clock.advance(1s);
    }
}

int runningVersion()
{
    return static_cast<int>(platform::ProcessInfo::processInfo().operatingSystemVersion().major);
}

using TableView = platform::UITableView;
using Collection = platform::UICollectionView;

// The older class on 13 to 15, the newer one from 16 on.
template <class ViewType>
std::string listClass(const ViewType& type, platform::View auto modified)
{
    Found found;
    show(platform::AnyView(std::move(modified))
         | introspect(type, iOS(type.iOS.v13, type.iOS.v14, type.iOS.v15), found.as<TableView>("UITableView"))
         | introspect(type, iOS(type.iOS.v16, type.iOS.v17), found.as<Collection>("UICollectionView")));
    return found.name();
}

} // namespace

TEST(FoundContainers, ListsAreWhatTheRunningSystemMakesThem)
{
    const auto version = runningVersion();
    const std::string expected = version < 16 ? "UITableView" : "UICollectionView";
    const auto rows = platform::List{Text{"a"}, Text{"b"}};
    using platform::listStyle;
    using platform::ListStyle;
    EXPECT_EQ(listClass(list, rows), expected);
    EXPECT_EQ(listClass(listWithGroupedStyle, rows | listStyle(ListStyle::grouped)), expected);
    EXPECT_EQ(listClass(listWithInsetGroupedStyle, rows | listStyle(ListStyle::insetGrouped)), expected);
    EXPECT_EQ(listClass(form, platform::Form{Text{"a"}}), expected);
    const auto since14 = version < 14 ? "" : expected;
    EXPECT_EQ(listClass(listWithInsetStyle, rows | listStyle(ListStyle::inset)), since14);
    EXPECT_EQ(listClass(listWithSidebarStyle, rows | listStyle(ListStyle::sidebar)), since14);

    Found cell;
    show(platform::List{Text{"a"}
                        | introspect(listCell, iOS(listCell.iOS.v13, listCell.iOS.v14, listCell.iOS.v15),
                                     cell.as<platform::UITableViewCell>("UITableViewCell"))
                        | introspect(listCell, iOS(listCell.iOS.v16, listCell.iOS.v17),
                                     cell.as<platform::UICollectionViewCell>("UICollectionViewCell"))});
    EXPECT_EQ(cell.name(), expected + "Cell");
}

TEST(FoundContainers, NavigationAndTabsAreFoundOnTheRunningSystem)
{
    const auto version = runningVersion();
    Found outside, inside, stack, tabs, pages;
    using Navigation = platform::UINavigationController;
    const auto& type = navigationViewWithStackStyle;
    const auto versions = iOS(startingAt(type.iOS.v13));
    const auto root =
        Text{"a"} | introspect(type, versions, IntrospectionScope::ancestor, inside.as<Navigation>("inside"));
    show(platform::NavigationView{root} | platform::navigationViewStyle(platform::NavigationViewStyle::stack)
         | introspect(type, versions, outside.as<Navigation>("outside")));
    EXPECT_EQ(outside.name(), "outside");
    EXPECT_EQ(inside.name(), "inside");

    Found columns;
    const auto& split = navigationViewWithColumnsStyle;
    show(platform::NavigationView{Text{"a"}}
         | platform::navigationViewStyle(platform::NavigationViewStyle::columns)
         | introspect(split, iOS(startingAt(split.iOS.v13)),
                      columns.as<platform::UISplitViewController>("columns")));
    EXPECT_EQ(columns.name(), "columns");

    show(platform::NavigationStack{Text{"a"}}
         | introspect(navigationStack, iOS(startingAt(navigationStack.iOS.v16)),
                      stack.as<Navigation>("stack")));
    EXPECT_EQ(stack.name(), version < 16 ? "" : "stack");

    show(platform::TabView{Text{"a"}, Text{"b"}}
         | introspect(tabView, iOS(startingAt(tabView.iOS.v13)),
                      tabs.as<platform::UITabBarController>("tabs")));
    EXPECT_EQ(tabs.name(), "tabs");

    show(platform::TabView{Text{"a"}, Text{"b"}} | platform::tabViewStyle(platform::TabViewStyle::page)
         | introspect(tabViewWithPageStyle, iOS(startingAt(tabViewWithPageStyle.iOS.v14)),
                      pages.as<Collection>("pages")));
    EXPECT_EQ(pages.name(), version < 14 ? "" : "pages");
}

TEST(FoundContainers, PresentationsAreFoundFromInsideOnTheRunningSystem)
{
    const auto version = runningVersion();
    const auto shown = platform::Binding<bool>::constant(true);
    Found any, asSheet, cover, bubble;
    show(Text{"a"} | platform::sheet(shown, [&] {
             return Text{"b"}
             | introspect(sheet, iOS(startingAt(sheet.iOS.v13)),
                          any.as<platform::UIPresentationController>("any"))
                 | introspect(sheet, iOS(startingAt(sheet.iOS.asSheet.v15)),
                              asSheet.as<platform::UISheetPresentationController>("sheet"));
         }));
    EXPECT_EQ(any.name(), "any");
    EXPECT_EQ(asSheet.name(), version < 15 ? "" : "sheet");

    show(Text{"a"} | platform::fullScreenCover(shown, [&] {
             return Text{"b"}
             | introspect(fullScreenCover, iOS(startingAt(fullScreenCover.iOS.v14)),
                          cover.as<platform::UIPresentationController>("cover"));
         }));
    EXPECT_EQ(cover.name(), version < 14 ? "" : "cover");

    show(Text{"a"} | platform::popover(shown, [&] {
             return Text{"b"}
             | introspect(popover, iOS(startingAt(popover.iOS.v13)),
                          bubble.as<platform::UIPopoverPresentationController>("popover"));
         }));
    EXPECT_EQ(bubble.name(), "popover");
}

TEST(FoundContainers, AreFoundOnEverySystem)
{
    for (const char* version : {"13.0", "14.0", "15.0", "16.0", "17.0"})
        EXPECT_TRUE(passesOnSystem(version, "FoundContainers.*RunningSystem*")) << version;
}

// What a type finds from inside, in surroundings that a test makes.

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
