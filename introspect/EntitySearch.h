// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformEntity.h"
#include "platform/foundation/NSObject.h"
#include "platform/uikit/Forward.h"

#include <concepts>
#include <memory>

// The two searches from a probe. Each gives null when it finds nothing: no anchor, no common ancestor and an unloaded
// view are no errors. Marker controllers and their views are never found. Main thread only.
namespace introspect {

// Whether an entity is of the wanted type.
using EntityTest = bool (*)(const platform::NSObject&);

// The receiver search: the hierarchy of the modified view lies, depth first, between the anchor behind it and the
// probe in front of it. The first wanted entity of that stretch is its outermost one.
std::shared_ptr<platform::UIView> receiverView(platform::UIViewController& probe, EntityTest isWanted);
std::shared_ptr<platform::UIViewController> receiverController(platform::UIViewController& probe,
                                                               EntityTest isWanted);

// The ancestor search: the nearest wanted entity above the probe.
std::shared_ptr<platform::UIView> ancestorView(platform::UIViewController& probe, EntityTest isWanted);
std::shared_ptr<platform::UIViewController> ancestorController(platform::UIViewController& probe,
                                                               EntityTest isWanted);

template <class Entity>
bool isEntity(const platform::NSObject& object)
{
    return dynamic_cast<const Entity*>(&object) != nullptr;
}

template <PlatformEntity Entity>
std::shared_ptr<Entity> receiverEntity(platform::UIViewController& probe)
{
    using Base = PlatformEntityBase<Entity>;
    if constexpr (std::same_as<Base, platform::UIView>)
        return std::static_pointer_cast<Entity>(receiverView(probe, isEntity<Entity>));
    else if constexpr (std::same_as<Base, platform::UIViewController>)
        return std::static_pointer_cast<Entity>(receiverController(probe, isEntity<Entity>));
    else
        return nullptr; // a probe has no counterpart among presentation controllers
}

template <PlatformEntity Entity>
std::shared_ptr<Entity> ancestorEntity(platform::UIViewController& probe)
{
    using Base = PlatformEntityBase<Entity>;
    if constexpr (std::same_as<Base, platform::UIView>)
        return std::static_pointer_cast<Entity>(ancestorView(probe, isEntity<Entity>));
    else if constexpr (std::same_as<Base, platform::UIViewController>)
        return std::static_pointer_cast<Entity>(ancestorController(probe, isEntity<Entity>));
    else
        return nullptr;
}

} // namespace introspect
