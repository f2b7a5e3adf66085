// SPDX-License-Identifier: MIT
#include "platform/swiftui/Transaction.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/TransactionHosts.h"
#include "platform/swiftui/ViewHost.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

Transaction& currentTransaction()
{
    static Transaction current;
    return current;
}

std::vector<ViewHost*>& hosts()
{
    static auto& all = *new std::vector<ViewHost*>; // each takes itself out before it goes
    return all;
}

} // namespace

void addTransactionHost(ViewHost& host)
{
    hosts().push_back(&host);
}

void removeTransactionHost(ViewHost& host)
{
    std::erase(hosts(), &host);
}

const Transaction& Transaction::current()
{
    return currentTransaction();
}

void withTransaction(const Transaction& transaction, const std::function<void()>& body)
{
    assertOnMainThread();
    auto outer = std::exchange(currentTransaction(), transaction);
    // One may end another on the way.
    for (auto* host : std::vector(hosts())) {
        if (std::ranges::find(hosts(), host) != hosts().end())
            host->prepareForChange();
    }
    body();
    currentTransaction() = std::move(outer);
}

void withAnimation(std::optional<Animation> animation, const std::function<void()>& body)
{
    withTransaction({.animation = animation, .disablesAnimations = !animation}, body);
}

} // namespace platform
