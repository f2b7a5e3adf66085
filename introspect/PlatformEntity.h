// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/Forward.h"

#include <concepts>
#include <memory>
#include <type_traits>
#include <vector>

// The nodes of the platform's hierarchy and how one walks them. Main thread only.
namespace introspect {

// Views, view controllers and presentation controllers. Needs the complete type.
template <class Entity>
concept PlatformEntity =
    std::derived_from<Entity, platform::UIView> || std::derived_from<Entity, platform::UIViewController>
    || std::derived_from<Entity, platform::UIPresentationController>;

// The type of an entity's ancestors and descendants.
template <PlatformEntity Entity>
using PlatformEntityBase =
    std::conditional_t<std::derived_from<Entity, platform::UIView>, platform::UIView,
                       std::conditional_t<std::derived_from<Entity, platform::UIViewController>,
                                          platform::UIViewController, platform::UIPresentationController>>;

// The superview, the parent controller; a presentation controller has none. Null at the root.
std::shared_ptr<platform::UIView> ancestor(const platform::UIView& entity);
std::shared_ptr<platform::UIViewController> ancestor(const platform::UIViewController& entity);
std::shared_ptr<platform::UIPresentationController>
ancestor(const platform::UIPresentationController& entity);

// The subviews, back to front; the child controllers; none. Valid until the hierarchy changes.
const std::vector<std::shared_ptr<platform::UIView>>& descendants(const platform::UIView& entity);
const std::vector<std::shared_ptr<platform::UIViewController>>&
descendants(const platform::UIViewController& entity);
const std::vector<std::shared_ptr<platform::UIPresentationController>>&
descendants(const platform::UIPresentationController& entity);

// A view is a descendant of itself, a controller is not, a presentation controller is of nothing. The search for the
// nearest common ancestor leans on just this difference.
bool isDescendant(const platform::UIView& entity, const platform::UIView& of);
bool isDescendant(const platform::UIViewController& entity, const platform::UIViewController& of);
bool isDescendant(const platform::UIPresentationController& entity,
                  const platform::UIPresentationController& of);

} // namespace introspect
