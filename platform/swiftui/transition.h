// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/TransitionNode.h"

#include <utility>

namespace platform {

// How the content comes and goes when the change that brings or removes it is animated. Without one it does so at once.
struct TransitionModifier {
    AnyTransition transition;
    class Node;
    bool operator==(const TransitionModifier&) const = default;
};

class TransitionModifier::Node : public TransitionNode {
public:
    Node(const NodeContext& context, const TransitionModifier& modifier)
        : TransitionNode(context, modifier.transition)
    {
    }

protected:
    void updateModifier(const TransitionModifier& modifier) { setTransition(modifier.transition); }
};

inline auto transition(AnyTransition transition)
{
    return TransitionModifier{std::move(transition)};
}

} // namespace platform
