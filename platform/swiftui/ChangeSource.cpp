// SPDX-License-Identifier: MIT
#include "platform/swiftui/ChangeSource.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/swiftui/ViewNode.h"

namespace platform {

void ChangeSource::notify()
{
    assertOnMainThread();
    for (auto* node : dependents_)
        node->markDirty();
}

void ChangeSource::prepareForChange()
{
    assertOnMainThread();
    if (dependents_.empty())
        return;
    // A flush may unmount dependents, and with them the last reference to this.
    auto kept = shared_from_this();
    (*dependents_.begin())->host().prepareForChange();
}

} // namespace platform
