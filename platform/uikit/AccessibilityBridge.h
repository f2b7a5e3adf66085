// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/Forward.h"

namespace platform {

// What stands between the views and the accessibility bus. Views have a node there from the first time that somebody asks
// about them until they leave their window. Main thread only.
class AccessibilityBridge {
public:
    // The view is not to be asked any more. Free while nothing has a node.
    static void forget(const UIView& view)
    {
        if (nodeCount_ > 0)
            drop(view);
    }

private:
    friend class AccessibilityNodes;
    static void drop(const UIView& view);
    static inline int nodeCount_ = 0;
};

} // namespace platform
