// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/IntrospectionSelector.h"
#include "introspect/IntrospectionView.h"
#include "introspect/PlatformViewVersionPredicate.h"
#include "introspect/marked.h"
#include "platform/foundation/UUID.h"

#include <functional>
#include <initializer_list>
#include <optional>

namespace introspect {

// What `introspect` puts around a view: an anchor behind it and a probe in front of it, both without size; nothing
// where no predicate matches the running system.
template <IntrospectableViewType ViewType, PlatformEntity Target>
struct IntrospectModifier {
    platform::UUID id; // a new one for each modifier that is made; its copies share it
    IntrospectionScope scope;
    std::optional<IntrospectionSelector<Target>> selector;
    std::function<void(Target&)> customize;

    IntrospectModifier(std::initializer_list<PlatformViewVersionPredicate<ViewType, Target>> predicates,
                       std::optional<IntrospectionScope> wantedScope,
                       std::function<void(Target&)> customizeTarget)
        : scope(wantedScope.value_or(ViewType::scope))
        , customize(std::move(customizeTarget))
    {
        for (const auto& predicate : predicates) {
            if (predicate.selector) {
                selector = predicate.selector;
                break;
            }
        }
    }

    template <platform::View Content>
    platform::AnyView body(const Content& content) const
    {
        using platform::AnyView;
        if (!selector)
            return AnyView(content);
        const auto find = [selector = selector, scope = scope](platform::UIViewController& probe) {
            return selector->find(probe, scope);
        };
        // Of any type: else the type of the whole, which holds the content marked and as it is, would double with each
        // modifier.
        return marked(AnyView(content), id, AnyView(IntrospectionView<Target>(id, find, customize)));
    }
};

} // namespace introspect
