// SPDX-License-Identifier: MIT
// Views that hold others are found as what the catalogue says they are, on each version of the system.
#include "introspect/ViewTypes.h"
#include "introspect/introspect.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/swiftui/Form.h"
#include "platform/swiftui/List.h"
#include "platform/swiftui/NavigationView.h"
#include "platform/swiftui/TabView.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/sheet.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UITableView.h"
#include "platform/uikit/UITableViewCell.h"
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
template <class Root>
void show(Root root)
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
template <class ViewType, class Modified>
std::string listClass(const ViewType& type, const Modified& modified)
{
    Found found;
    show(modified
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

} // namespace introspect
