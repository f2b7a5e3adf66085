// SPDX-License-Identifier: MIT
#include "introspect/PlatformEntity.h"

#include "platform/uikit/UIPresentationController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

namespace introspect {

using platform::UIPresentationController;
using platform::UIView;
using platform::UIViewController;

std::shared_ptr<UIView> ancestor(const UIView& entity)
{
    return entity.superview();
}

std::shared_ptr<UIViewController> ancestor(const UIViewController& entity)
{
    return entity.parent();
}

std::shared_ptr<UIPresentationController> ancestor(const UIPresentationController&)
{
    return nullptr;
}

const std::vector<std::shared_ptr<UIView>>& descendants(const UIView& entity)
{
    return entity.subviews();
}

const std::vector<std::shared_ptr<UIViewController>>& descendants(const UIViewController& entity)
{
    return entity.children();
}

const std::vector<std::shared_ptr<UIPresentationController>>& descendants(const UIPresentationController&)
{
    static const std::vector<std::shared_ptr<UIPresentationController>> none;
    return none;
}

bool isDescendant(const UIView& entity, const UIView& of)
{
    return entity.isDescendant(of);
}

bool isDescendant(const UIViewController& entity, const UIViewController& of)
{
    for (auto parent = entity.parent(); parent; parent = parent->parent()) {
        if (parent.get() == &of)
            return true;
    }
    return false;
}

bool isDescendant(const UIPresentationController&, const UIPresentationController&)
{
    return false;
}

} // namespace introspect
