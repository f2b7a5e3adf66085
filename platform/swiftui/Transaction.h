// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Animation.h"

#include <functional>
#include <optional>

namespace platform {

// What goes with a change of state on its way to the screen.
struct Transaction {
    std::optional<Animation> animation;
    bool disablesAnimations = false;

    // The one that changes made now belong to; an empty one outside of withTransaction.
    static const Transaction& current();
    bool isEmpty() const { return !animation && !disablesAnimations; }
    bool operator==(const Transaction&) const = default;
};

// Runs `body`; the changes of state it makes reach the screen with `transaction`. Main thread only.
void withTransaction(const Transaction& transaction, const std::function<void()>& body);
// The changes of state that `body` makes are animated; none makes them at once.
void withAnimation(std::optional<Animation> animation, const std::function<void()>& body);
inline void withAnimation(const std::function<void()>& body)
{
    withAnimation(Animation(), body);
}

} // namespace platform
