// SPDX-License-Identifier: MIT
#include "introspect/IntrospectionStore.h"

#include "platform/dispatch/RunLoop.h"

namespace introspect {

IntrospectionStore& IntrospectionStore::shared()
{
    platform::assertOnMainThread();
    static IntrospectionStore store;
    return store;
}

IntrospectionStore::Pair IntrospectionStore::pair(const platform::UUID& id) const
{
    const auto found = pairs_.find(id);
    return found == pairs_.end() ? Pair{} : found->second;
}

void IntrospectionStore::setController(const platform::UUID& id,
                                       std::weak_ptr<IntrospectionPlatformViewController> controller)
{
    platform::assertOnMainThread();
    pairs_[id].controller.setWrappedValue(std::move(controller));
}

void IntrospectionStore::setAnchor(const platform::UUID& id,
                                   std::weak_ptr<IntrospectionAnchorPlatformViewController> anchor)
{
    platform::assertOnMainThread();
    pairs_[id].anchor.setWrappedValue(std::move(anchor));
}

} // namespace introspect
