// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <utility>

namespace platform {

enum class Layer { behind, inFront };

// A second view behind or in front of the content. The content alone decides the size; the second view is offered that size
// and stands in it by the alignment.
template <View Secondary, Layer layer>
struct LayerModifier {
    Secondary secondary;
    Alignment alignment;

    class Node;
    friend bool operator==(const LayerModifier& a, const LayerModifier& b)
        requires std::equality_comparable<Secondary>
    = default;
};

// Of both layers: what needs no type.
class LayerNode : public ModifierNode {
public:
    using ModifierNode::ModifierNode;
    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;
    void invalidateAlignment(Alignment alignment);

protected:
    CGSize measure(const ProposedSize& proposal) override { return child().sizeThatFits(proposal); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void setSecondary(std::unique_ptr<ViewNode> node, Layer layer, Alignment alignment);
    ViewNode& secondary() const { return *secondary_; }

private:
    std::unique_ptr<ViewNode> secondary_;
    Layer layer_ = Layer::behind;
    Alignment alignment_;
};

// A background is made before the content and an overlay after it, for what they make (controllers, say) shall stand
// in the order of the tree. The content is made by ModifiedNode, so an overlay waits for it.
template <View Secondary, Layer layer>
class LayerModifier<Secondary, layer>::Node : public LayerNode {
public:
    Node(const NodeContext& context, const LayerModifier& modifier)
        : LayerNode(context)
    {
        if constexpr (layer == Layer::behind)
            setSecondary(makeNode(context.below(*this), modifier.secondary), layer, modifier.alignment);
    }

protected:
    void contentMounted(const LayerModifier& modifier)
    {
        if constexpr (layer == Layer::inFront)
            setSecondary(makeNode(context().below(*this), modifier.secondary), layer, modifier.alignment);
    }
    void updateModifier(const LayerModifier& modifier)
    {
        invalidateAlignment(modifier.alignment);
        updateNode(secondary(), modifier.secondary);
    }
};

template <View Secondary>
auto background(Secondary secondary, Alignment alignment = {})
{
    return LayerModifier<Secondary, Layer::behind>{std::move(secondary), alignment};
}
template <View Secondary>
auto overlay(Secondary secondary, Alignment alignment = {})
{
    return LayerModifier<Secondary, Layer::inFront>{std::move(secondary), alignment};
}

} // namespace platform
