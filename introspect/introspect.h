// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectModifier.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <type_traits>

namespace introspect {

// Reaches the platform entity behind a declarative view and runs `customize` on it:
//
//     TextEditor{text}
//         | introspect(textEditor, iOS(textEditor.iOS.v16, textEditor.iOS.v17),
//                      [](UITextView& view) { view.setEditable(false); });
//
// The closure runs once when the entity is first found, and again on every update of the view: it must be safe to
// repeat. It does not run while nothing is found, nor on a system that no predicate matches; there the view is left as
// it is. Several predicates stand in braces; the first that matches decides. The scope is the view type's unless it
// is given. Main thread only.
template <IntrospectableViewType ViewType, class Target>
auto introspect(ViewType, std::initializer_list<PlatformViewVersionPredicate<ViewType, Target>> predicates,
                std::optional<IntrospectionScope> scope,
                std::type_identity_t<std::function<void(Target&)>> customize)
{
    return IntrospectModifier<ViewType, Target>(predicates, scope, std::move(customize));
}

template <IntrospectableViewType ViewType, class Target>
auto introspect(ViewType, std::initializer_list<PlatformViewVersionPredicate<ViewType, Target>> predicates,
                std::type_identity_t<std::function<void(Target&)>> customize)
{
    return IntrospectModifier<ViewType, Target>(predicates, std::nullopt, std::move(customize));
}

template <IntrospectableViewType ViewType, class Target>
auto introspect(ViewType, const PlatformViewVersionPredicate<ViewType, Target>& predicate,
                std::optional<IntrospectionScope> scope,
                std::type_identity_t<std::function<void(Target&)>> customize)
{
    return IntrospectModifier<ViewType, Target>({predicate}, scope, std::move(customize));
}

template <IntrospectableViewType ViewType, class Target>
auto introspect(ViewType, const PlatformViewVersionPredicate<ViewType, Target>& predicate,
                std::type_identity_t<std::function<void(Target&)>> customize)
{
    return IntrospectModifier<ViewType, Target>({predicate}, std::nullopt, std::move(customize));
}

} // namespace introspect
