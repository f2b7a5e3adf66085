// SPDX-License-Identifier: MIT
// Each view type of the catalogue finds its platform class where that stands: between the markers, or around them. Those
// whose declarative view exists are found behind it.
#include "introspect/EntityWalks.h"
#include "introspect/ViewTypes.h"
#include "introspect/introspect.h"
#include "platform/services/ASAuthorizationAppleIDButton.h"
#include "platform/services/AVPlayerViewController.h"
#include "platform/services/MKMapView.h"
#include "platform/swiftui/ScrollView.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/TextEditor.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UICollectionView.h"
#include "platform/uikit/UICollectionViewCell.h"
#include "platform/uikit/UIColorWell.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UIPickerView.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIProgressView.h"
#include "platform/uikit/UISearchBar.h"
#include "platform/uikit/UISegmentedControl.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UIStepper.h"
#include "platform/uikit/UISwitch.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UITextField.h"
#include "platform/uikit/UITextView.h"
#include "tests/introspect/MarkedStage.h"
#include "tests/introspect/Representables.h"
#include "tests/introspect/Screen.h"

#include <gtest/gtest.h>

namespace introspect {

using platform::UIView;
using platform::UIViewController;

namespace {

template <class Entity>
std::shared_ptr<Entity> firstIn(const UIView& root)
{
    for (const auto& entity : allDescendants(root)) {
        if (auto found = std::dynamic_pointer_cast<Entity>(entity))
            return found;
    }
    return nullptr;
}

template <class Entity>
std::shared_ptr<Entity> firstIn(const UIViewController& root)
{
    for (const auto& entity : allDescendants(root)) {
        if (auto found = std::dynamic_pointer_cast<Entity>(entity))
            return found;
    }
    return nullptr;
}

// The content holds the entity: each type whose default scope is the receiver.
template <class ViewType, class Entity>
void expectReceiver(const char* name, const PlatformViewVersion<iOSVersion, ViewType, Entity>& v17)
{
    MarkedStage stage;
    stage.addAnchor();
    const auto entity = stage.addNew<Entity>();
    stage.addProbe();
    const auto predicate = iOS(v17);
    ASSERT_TRUE(predicate.selector.has_value()) << name;
    EXPECT_EQ(predicate.selector->find(*stage.probe, ViewType::scope), entity) << name;
}

} // namespace

TEST(FoundViewTypes, FindWhatTheModifiedViewIsMadeOf)
{
#define EXPECT_RECEIVER(type) expectReceiver(#type, type.iOS.v17)
    EXPECT_RECEIVER(colorPicker);
    EXPECT_RECEIVER(datePicker);
    EXPECT_RECEIVER(datePickerWithCompactStyle);
    EXPECT_RECEIVER(datePickerWithGraphicalStyle);
    EXPECT_RECEIVER(datePickerWithWheelStyle);
    EXPECT_RECEIVER(form);
    EXPECT_RECEIVER(formWithGroupedStyle);
    EXPECT_RECEIVER(list);
    EXPECT_RECEIVER(listWithGroupedStyle);
    EXPECT_RECEIVER(listWithInsetGroupedStyle);
    EXPECT_RECEIVER(listWithInsetStyle);
    EXPECT_RECEIVER(listWithSidebarStyle);
    EXPECT_RECEIVER(map);
    EXPECT_RECEIVER(navigationSplitView);
    EXPECT_RECEIVER(navigationStack);
    EXPECT_RECEIVER(navigationViewWithColumnsStyle);
    EXPECT_RECEIVER(navigationViewWithStackStyle);
    EXPECT_RECEIVER(pageControl);
    EXPECT_RECEIVER(pickerWithSegmentedStyle);
    EXPECT_RECEIVER(pickerWithWheelStyle);
    EXPECT_RECEIVER(progressViewWithCircularStyle);
    EXPECT_RECEIVER(progressViewWithLinearStyle);
    EXPECT_RECEIVER(scrollView);
    EXPECT_RECEIVER(searchField);
    EXPECT_RECEIVER(secureField);
    EXPECT_RECEIVER(signInWithAppleButton);
    EXPECT_RECEIVER(slider);
    EXPECT_RECEIVER(stepper);
    EXPECT_RECEIVER(table);
    EXPECT_RECEIVER(tabView);
    EXPECT_RECEIVER(tabViewWithPageStyle);
    EXPECT_RECEIVER(textEditor);
    EXPECT_RECEIVER(textField);
    EXPECT_RECEIVER(textFieldWithVerticalAxis);
    EXPECT_RECEIVER(toggle);
    EXPECT_RECEIVER(toggleWithSwitchStyle);
    EXPECT_RECEIVER(videoPlayer);
#undef EXPECT_RECEIVER
}

namespace {

// What `type` finds from inside of surroundings that the controllers and views around it make.
template <class ViewType, class Entity, class Surround>
std::shared_ptr<Entity>
foundInside(ViewType type, const PlatformViewVersion<iOSVersion, ViewType, Entity>& v17,
            const Surround& surround, std::optional<IntrospectionScope> scope = std::nullopt)
{
    std::shared_ptr<Entity> found;
    Screen screen(shown<UIView>()
                      | introspect(type, iOS(v17), scope,
                                   [&found](Entity& entity) {
                                       found = std::static_pointer_cast<Entity>(entity.shared_from_this());
                                   }),
                  surround);
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
    Screen screen(shown<UIView>()
                  | introspect(window, iOS(window.iOS.v17), [&found](platform::UIWindow& entity) {
                        found = std::static_pointer_cast<platform::UIWindow>(entity.shared_from_this());
                    }));
    EXPECT_EQ(found, screen.window);
}

TEST(FoundViewTypes, FindTheControllerOfTheViewElseTheOneAround)
{
    std::vector<std::shared_ptr<UIViewController>> found;
    const auto record = [&found](UIViewController& entity) {
        found.push_back(std::static_pointer_cast<UIViewController>(entity.shared_from_this()));
    };
    const auto any = iOS(startingAt(viewController.iOS.v13));
    {
        Screen screen(shown<platform::UITabBarController>() | introspect(viewController, any, record));
        EXPECT_EQ(found.at(0), firstIn<platform::UITabBarController>(*screen.host));
    }
    found.clear();
    {
        Screen screen(shown<UIView>() | introspect(viewController, any, record));
        EXPECT_EQ(found.at(0), screen.host);
    }
}

TEST(FoundViewTypes, FindTheViewsOfDeclarativeViews)
{
    std::shared_ptr<UIView> asView;
    std::shared_ptr<platform::UITextView> asEditor;
    Screen screen(platform::TextEditor{platform::Binding<platform::String>::constant("text")}
                  | introspect(textEditor, iOS(textEditor.iOS.v17),
                               [&](platform::UITextView& entity) {
                                   asEditor = std::static_pointer_cast<platform::UITextView>(
                                       entity.shared_from_this());
                               })
                  | introspect(view, iOS(view.iOS.v17), [&](UIView& entity) {
                        asView = std::static_pointer_cast<UIView>(entity.shared_from_this());
                    }));
    EXPECT_EQ(asEditor, firstIn<platform::UITextView>(*screen.window));
    EXPECT_EQ(asView, asEditor);
}

TEST(FoundViewTypes, FindAScrollViewFromOutsideAndFromInside)
{
    std::shared_ptr<platform::UIScrollView> fromOutside;
    std::shared_ptr<platform::UIScrollView> fromInside;
    const auto into = [](std::shared_ptr<platform::UIScrollView>& found) {
        return [&found](platform::UIScrollView& entity) {
            found = std::static_pointer_cast<platform::UIScrollView>(entity.shared_from_this());
        };
    };
    const auto any = iOS(startingAt(scrollView.iOS.v13));
    Screen screen(
        platform::ScrollView(platform::Text{"line"}
                             | introspect(scrollView, any, IntrospectionScope::ancestor, into(fromInside)))
        | introspect(scrollView, any, into(fromOutside)));
    EXPECT_NE(fromOutside, nullptr);
    EXPECT_EQ(fromOutside, firstIn<platform::UIScrollView>(*screen.window));
    EXPECT_EQ(fromInside, fromOutside);
}

} // namespace introspect
