// SPDX-License-Identifier: MIT
#include "platform/swiftui/RepresentableNode.h"

#include "platform/swiftui/ViewHost.h"

namespace platform {

void Represented::updateAfterSync(ViewHost& host)
{
    host.performAfterSync(updateIfMounted());
}

std::function<void()> Represented::updateIfMounted()
{
    return [this, isMounted = std::weak_ptr(isMounted_)] {
        if (isMounted.lock())
            updateRepresented();
    };
}

} // namespace platform
