// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectionScope.h"

#include <concepts>

namespace introspect {

// A kind of declarative view that the catalogue in ViewTypes/ describes: an empty value whose `scope` says where its
// platform entity is looked for unless the caller says otherwise.
template <class Type>
concept IntrospectableViewType = std::semiregular<Type> && requires {
    { Type::scope } -> std::convertible_to<IntrospectionScope>;
};

// The base of view types. Most are found in what the view is made of; the others hide `scope` with their own.
struct IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::receiver;
};

} // namespace introspect
