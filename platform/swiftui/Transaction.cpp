// SPDX-License-Identifier: MIT
#include "platform/swiftui/Transaction.h"

#include "platform/dispatch/RunLoop.h"

#include <utility>

namespace platform {

namespace {

Transaction& currentTransaction()
{
    static Transaction current;
    return current;
}

} // namespace

const Transaction& Transaction::current()
{
    return currentTransaction();
}

void withTransaction(const Transaction& transaction, const std::function<void()>& body)
{
    assertOnMainThread();
    auto outer = std::exchange(currentTransaction(), transaction);
    body();
    currentTransaction() = std::move(outer);
}

void withAnimation(std::optional<Animation> animation, const std::function<void()>& body)
{
    withTransaction({.animation = animation, .disablesAnimations = !animation}, body);
}

} // namespace platform
