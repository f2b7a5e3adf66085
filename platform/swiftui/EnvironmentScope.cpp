// SPDX-License-Identifier: MIT
#include "platform/swiftui/EnvironmentScope.h"

#include "platform/swiftui/ViewNode.h"

namespace platform {

EnvironmentScope::Entry& EnvironmentScope::entryOf(EnvironmentKeyId key)
{
    return entries_[key];
}

const std::any& EnvironmentScope::resolve(EnvironmentKeyId key, ViewNode* reader)
{
    auto* scope = this;
    // The outermost scope, the host's, answers what nobody wrote, so that it can still be written there.
    while (scope->parent_ && !scope->entries_.contains(key))
        scope = scope->parent_.get();
    auto& entry = scope->entryOf(key);
    if (reader)
        reader->dependOn(entry.source);
    return entry.value;
}

} // namespace platform
