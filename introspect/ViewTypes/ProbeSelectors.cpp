// SPDX-License-Identifier: MIT
#include "introspect/ViewTypes/ProbeSelectors.h"

#include "introspect/EntityWalks.h"
#include "introspect/IntrospectionSelector.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISearchBar.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"
#include "platform/uikit/UIWindow.h"

namespace introspect::catalogue {

using platform::UIViewController;

namespace {

// The default selector whose ancestor closure reads `property`.
template <class Target>
IntrospectionSelector<Target> withAncestor(std::shared_ptr<Target> (UIViewController::*property)() const)
{
    return IntrospectionSelector<Target>::defaultSelector().withAncestorSelector(
        [property](UIViewController& probe) { return (probe.*property)(); });
}

std::shared_ptr<platform::UIView> searchRoot(const UIViewController& probe)
{
    const auto navigation = probe.navigationController();
    const auto navigationView = navigation ? navigation->viewIfLoaded() : nullptr;
    auto root = probe.viewIfLoaded();
    while (root && root != navigationView && root->superview())
        root = root->superview();
    return root;
}

std::shared_ptr<platform::UISearchBar> searchBar(UIViewController& probe)
{
    const auto root = searchRoot(probe);
    if (!root)
        return nullptr;
    for (const auto& view : allDescendants(*root)) {
        if (auto bar = std::dynamic_pointer_cast<platform::UISearchBar>(view))
            return bar;
    }
    return nullptr;
}

std::shared_ptr<platform::UIWindow> window(UIViewController& probe)
{
    const auto view = probe.viewIfLoaded();
    return view ? view->window() : nullptr;
}

} // namespace

IntrospectionSelector<platform::UINavigationController> navigationControllerSelector()
{
    return withAncestor(&UIViewController::navigationController);
}

IntrospectionSelector<platform::UISplitViewController> splitViewControllerSelector()
{
    return withAncestor(&UIViewController::splitViewController);
}

IntrospectionSelector<platform::UITabBarController> tabBarControllerSelector()
{
    return withAncestor(&UIViewController::tabBarController);
}

IntrospectionSelector<platform::UIPresentationController> presentationControllerSelector()
{
    return withAncestor(&UIViewController::presentationController);
}

IntrospectionSelector<platform::UISheetPresentationController> sheetPresentationControllerSelector()
{
    return withAncestor(&UIViewController::sheetPresentationController);
}

IntrospectionSelector<platform::UIPopoverPresentationController> popoverPresentationControllerSelector()
{
    return withAncestor(&UIViewController::popoverPresentationController);
}

IntrospectionSelector<platform::UIWindow> windowSelector()
{
    return IntrospectionSelector<platform::UIWindow>::defaultSelector().withReceiverSelector(window);
}

IntrospectionSelector<platform::UISearchBar> searchBarSelector()
{
    return IntrospectionSelector<platform::UISearchBar>::defaultSelector().withReceiverSelector(searchBar);
}

} // namespace introspect::catalogue
