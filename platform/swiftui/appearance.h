// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AppearanceNode.h"

#include <functional>
#include <utility>

namespace platform {

// Calls an action when the content has appeared, another when it has disappeared; see AppearanceNode for the moments.
struct AppearanceModifier {
    std::function<void()> onAppear, onDisappear;
    class Node;
};

class AppearanceModifier::Node : public AppearanceNode {
public:
    Node(const NodeContext& context, const AppearanceModifier& modifier)
        : AppearanceNode(context)
    {
        updateModifier(modifier);
    }

protected:
    void updateModifier(const AppearanceModifier& modifier)
    {
        onAppear_ = modifier.onAppear;
        onDisappear_ = modifier.onDisappear;
    }
};

inline auto onAppear(std::function<void()> action)
{
    return AppearanceModifier{.onAppear = std::move(action)};
}
inline auto onDisappear(std::function<void()> action)
{
    return AppearanceModifier{.onDisappear = std::move(action)};
}

} // namespace platform
