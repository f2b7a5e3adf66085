// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/Forward.h"
#include "platform/uikit/Forward.h"

// The selectors of view types whose entity is not found by searching the hierarchy of the modified view: each is the
// default selector with one of its two closures replaced by one that reads a property of the probe controller.
//
// Which one is replaced follows from where the entity stands:
// - Navigation, split and tab controllers have their view in the hierarchy of the modified navigation or tab view, so
//   the receiver search finds them. Code inside of such a view asks with scope `ancestor`: that closure reads the
//   property, which finds the controller also where its marker controllers are not its children.
// - Presentations stand around the modified view and are no part of a hierarchy: the ancestor closure reads the
//   property. `ancestor` is their view types' default scope.
// - The window and the search bar stand outside of the modified view although people think of them as belonging to it:
//   the receiver closure reads the property. `receiver` is their view types' default scope.
namespace introspect::catalogue {

// Ancestor closure.
IntrospectionSelector<platform::UINavigationController> navigationControllerSelector();
IntrospectionSelector<platform::UISplitViewController> splitViewControllerSelector();
IntrospectionSelector<platform::UITabBarController> tabBarControllerSelector();
IntrospectionSelector<platform::UIPresentationController> presentationControllerSelector();
IntrospectionSelector<platform::UISheetPresentationController> sheetPresentationControllerSelector();
IntrospectionSelector<platform::UIPopoverPresentationController> popoverPresentationControllerSelector();

// Receiver closure.
IntrospectionSelector<platform::UIWindow> windowSelector();
// Goes up from the probe's loaded view to the view of the nearest navigation controller, else to the root of the
// hierarchy, and takes the first search bar in it, depth first.
IntrospectionSelector<platform::UISearchBar> searchBarSelector();

} // namespace introspect::catalogue
