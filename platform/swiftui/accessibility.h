// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/environment.h"

namespace platform {

enum class AccessibilityHidden { no, yes };

// Whether assistive technology passes over the content with all it holds.
struct AccessibilityHiddenModifier {
    bool isHidden = false;
    class Node;
    bool operator==(const AccessibilityHiddenModifier&) const = default;
};

class AccessibilityHiddenModifier::Node : public EnvironmentWritingModifier<AccessibilityHiddenKey>::Node {
    using Base = EnvironmentWritingModifier<AccessibilityHiddenKey>;

public:
    Node(const NodeContext& context, const AccessibilityHiddenModifier& modifier)
        : Base::Node(context, {modifier.isHidden})
    {
    }

protected:
    void updateModifier(const AccessibilityHiddenModifier& modifier);
};

inline auto accessibilityHidden(AccessibilityHidden hidden = AccessibilityHidden::yes)
{
    return AccessibilityHiddenModifier{hidden == AccessibilityHidden::yes};
}

} // namespace platform
