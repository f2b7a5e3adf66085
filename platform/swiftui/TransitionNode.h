// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyTransition.h"
#include "platform/swiftui/GroupNode.h"
#include "platform/uikit/AnimationTiming.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

// A group whose coming and going is animated where the update that brings or removes it is.
class TransitionNode : public GroupNode {
public:
    TransitionNode(const NodeContext& context, AnyTransition transition);

    ViewNode* transitionNode() override { return this; }
    // The node has left the tree: moves what it shows away and calls `completion` when nothing is seen of it any more. Not
    // called when the node goes before. Touches do not reach it meanwhile.
    void leave(AnimationTiming timing, std::function<void()> completion);

protected:
    void setTransition(AnyTransition transition) { transition_ = std::move(transition); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    void apply(const AnyTransition::Effect& effect);

    AnyTransition transition_;
    std::optional<AnimationTiming> arriving_; // until it is placed
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace platform
