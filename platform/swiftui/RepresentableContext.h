// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Transaction.h"
#include "platform/swiftui/ViewNode.h"

#include <memory>

namespace platform {

// What a representable view is told when it makes or updates its platform view.
template <class Coordinator>
struct RepresentableContext {
    std::shared_ptr<Coordinator>
        coordinator; // lives as long as the view's place; null when the view makes none
    Transaction transaction;
    ViewNode& node;

    // The environment's value; the view is updated when it changes.
    template <EnvironmentKey Key>
    typename Key::Value environment() const
    {
        return node.environment<Key>();
    }
};

// The coordinator of views that have none.
struct NoCoordinator { };

namespace detail {

template <class R>
auto makeCoordinatorOf(const R& representable)
{
    if constexpr (requires { representable.makeCoordinator(); })
        return representable.makeCoordinator();
    else
        return std::shared_ptr<NoCoordinator>();
}
template <class R>
using CoordinatorOf = typename decltype(makeCoordinatorOf(std::declval<const R&>()))::element_type;

} // namespace detail
} // namespace platform
