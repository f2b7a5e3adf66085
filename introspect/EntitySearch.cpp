// SPDX-License-Identifier: MIT
#include "introspect/EntitySearch.h"

#include "introspect/EntityWalks.h"
#include "introspect/IntrospectionAnchorPlatformViewController.h"
#include "introspect/IntrospectionMarkers.h"
#include "introspect/IntrospectionPlatformViewController.h"
#include "introspect/IntrospectionStore.h"
#include "platform/uikit/UIView.h"

namespace introspect {

using platform::UIView;
using platform::UIViewController;

namespace {

std::shared_ptr<IntrospectionAnchorPlatformViewController> anchorOf(const platform::UUID& id)
{
    return IntrospectionStore::shared().pair(id).anchor.wrappedValue();
}

// The anchor that belongs to the front entity, as an entity of the same base; null when there is none.
std::shared_ptr<UIViewController> backEntity(const UIViewController& front)
{
    const auto* probe = dynamic_cast<const IntrospectionPlatformViewController*>(&front);
    return probe ? anchorOf(probe->id()) : nullptr;
}

std::shared_ptr<UIView> backEntity(const UIView& front)
{
    using BackReference = std::weak_ptr<IntrospectionPlatformViewController>;
    const auto* reference = front.associatedObject<BackReference>(introspectionControllerKey);
    const auto probe = reference ? reference->lock() : nullptr;
    const auto anchor = probe ? anchorOf(probe->id()) : nullptr;
    return anchor ? anchor->view() : nullptr;
}

bool isFound(const platform::NSObject& entity, EntityTest isWanted)
{
    return !isIntrospectionPlatformEntity(entity) && isWanted(entity);
}

template <class Base>
std::shared_ptr<Base> searchReceiver(const Base& front, EntityTest isWanted)
{
    const auto back = backEntity(front);
    auto common = back;
    while (common && !isDescendant(front, *common))
        common = ancestor(*common);
    if (!common)
        return nullptr;
    for (const auto& entity : AllDescendants<Base>(*common, *back)) {
        if (entity.get() == &front)
            break;
        if (isFound(*entity, isWanted))
            return entity;
    }
    return nullptr;
}

template <class Base>
std::shared_ptr<Base> searchAncestors(const Base& front, EntityTest isWanted)
{
    for (const auto& entity : ancestors(front)) {
        if (isFound(*entity, isWanted))
            return entity;
    }
    return nullptr;
}

} // namespace

std::shared_ptr<UIView> receiverView(UIViewController& probe, EntityTest isWanted)
{
    const auto front = probe.viewIfLoaded();
    return front ? searchReceiver(*front, isWanted) : nullptr;
}

std::shared_ptr<UIViewController> receiverController(UIViewController& probe, EntityTest isWanted)
{
    return searchReceiver(probe, isWanted);
}

std::shared_ptr<UIView> ancestorView(UIViewController& probe, EntityTest isWanted)
{
    const auto front = probe.viewIfLoaded();
    return front ? searchAncestors(*front, isWanted) : nullptr;
}

std::shared_ptr<UIViewController> ancestorController(UIViewController& probe, EntityTest isWanted)
{
    return searchAncestors(probe, isWanted);
}

} // namespace introspect
