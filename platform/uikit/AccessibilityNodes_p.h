// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <memory>

#include <QtGui/QAccessible>

class QWindow;

namespace platform {

// The nodes that stand for views on the accessibility bus, made when somebody asks. Views of role `none` have none: what
// they hold stands in their place. Main thread only.
class AccessibilityNodes {
public:
    // The view's node, which the library's cache owns. Valid until the view leaves its window. `surface` is given for a
    // window shown on the desktop.
    static QAccessibleInterface* node(UIView& view, QWindow* surface = nullptr);

    // The views whose nodes are children of this one's.
    static std::vector<std::shared_ptr<UIView>> children(const UIView& view);
    // The view whose node is the parent of this one's; null for a window.
    static std::shared_ptr<UIView> parent(const UIView& view);
};

} // namespace platform
