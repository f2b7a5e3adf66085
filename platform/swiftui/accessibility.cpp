// SPDX-License-Identifier: MIT
#include "platform/swiftui/accessibility.h"

#include "platform/uikit/UIView.h"

namespace platform {

void AccessibilityHiddenModifier::Node::updateModifier(const AccessibilityHiddenModifier& modifier)
{
    Base::Node::updateModifier({modifier.isHidden}); // for what is mounted from now on
    std::vector<std::shared_ptr<UIView>> views;
    appendPlatformViews(views);
    for (auto& view : views)
        view->accessibility().isHidden = modifier.isHidden;
}

} // namespace platform
