// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/EntitySearch.h"
#include "introspect/IntrospectionScope.h"

#include <functional>
#include <memory>

namespace introspect {

// How a target is found from the probe of a modified view, in each of the two scopes. A value.
template <class Target>
class IntrospectionSelector {
public:
    // Null when there is no target. An empty function finds nothing.
    using Find = std::function<std::shared_ptr<Target>(platform::UIViewController& probe)>;

    Find receiverSelector;
    Find ancestorSelector;

    // The target is the entity that the searches find.
    static IntrospectionSelector defaultSelector()
    {
        return from<Target>([](const std::shared_ptr<Target>& entity) { return entity; });
    }

    // The searches find an `Entity`, of which `select` gives the target or null.
    template <PlatformEntity Entity>
    static IntrospectionSelector
    from(std::function<std::shared_ptr<Target>(const std::shared_ptr<Entity>&)> select)
    {
        const auto with = [&select](std::shared_ptr<Entity> (*search)(platform::UIViewController&)) -> Find {
            return [select, search](platform::UIViewController& probe) -> std::shared_ptr<Target> {
                const auto entity = search(probe);
                return entity ? select(entity) : nullptr;
            };
        };
        return {with(receiverEntity<Entity>), with(ancestorEntity<Entity>)};
    }

    [[nodiscard]] IntrospectionSelector withReceiverSelector(Find find) const
    {
        return {std::move(find), ancestorSelector};
    }
    [[nodiscard]] IntrospectionSelector withAncestorSelector(Find find) const
    {
        return {receiverSelector, std::move(find)};
    }

    // Where both scopes are asked for, the ancestors are searched only when the receiver gives nothing.
    std::shared_ptr<Target> find(platform::UIViewController& probe, IntrospectionScope scope) const
    {
        if (scope.contains(IntrospectionScope::receiver) && receiverSelector) {
            if (auto target = receiverSelector(probe))
                return target;
        }
        if (scope.contains(IntrospectionScope::ancestor) && ancestorSelector)
            return ancestorSelector(probe);
        return nullptr;
    }
};

} // namespace introspect
