// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"

#include <functional>

namespace platform {

// A node whose coming and going is animated.
class TransitionNode : public UnaryNode {
public:
    using UnaryNode::UnaryNode;
    ViewNode* transitionNode() override { return this; }
    // The node has left the tree: moves what it shows away and calls `completion` when nothing is seen of it any more.
    virtual void leave(const AnimationTiming& timing, std::function<void()> completion) = 0;
};

} // namespace platform
