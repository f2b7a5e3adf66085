// SPDX-License-Identifier: MIT
// What a controller finds when it looks up the chain of its parents.
#include "platform/uikit/UIViewControllerAncestry_p.h"

#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UISplitViewController.h"
#include "platform/uikit/UITabBarController.h"

namespace platform {

namespace {

template <class Controller>
std::shared_ptr<Controller> nearestParent(const UIViewController& controller)
{
    for (auto parent = controller.parent(); parent; parent = parent->parent()) {
        if (auto found = std::dynamic_pointer_cast<Controller>(parent))
            return found;
    }
    return nullptr;
}

} // namespace

std::shared_ptr<UINavigationController> UIViewController::navigationController() const
{
    return nearestParent<UINavigationController>(*this);
}

std::shared_ptr<UISplitViewController> UIViewController::splitViewController() const
{
    return nearestParent<UISplitViewController>(*this);
}

std::shared_ptr<UITabBarController> UIViewController::tabBarController() const
{
    return nearestParent<UITabBarController>(*this);
}

std::shared_ptr<UIPresentationController> UIViewController::presentationController() const
{
    if (const auto* link = associatedObject<PresentationLink>(presentationKey)) {
        if (auto presentation = link->lock())
            return presentation;
    }
    const auto above = parent();
    return above ? above->presentationController() : nullptr;
}

std::shared_ptr<UISheetPresentationController> UIViewController::sheetPresentationController() const
{
    return std::dynamic_pointer_cast<UISheetPresentationController>(presentationController());
}

std::shared_ptr<UIPopoverPresentationController> UIViewController::popoverPresentationController() const
{
    return std::dynamic_pointer_cast<UIPopoverPresentationController>(presentationController());
}

} // namespace platform
