// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"

#include <memory>
#include <utility>

namespace platform {

// The content is seen only where the mask is opaque. The mask is offered the content's size and stands in it by the
// alignment.
template <View Mask>
struct MaskModifier {
    Mask mask;
    Alignment alignment;

    class Node;
    friend bool operator==(const MaskModifier& a, const MaskModifier& b)
        requires std::equality_comparable<Mask>
    = default;
};

// What needs no type: two groups, of which one is the other's mask.
class MaskNode : public GroupNode {
public:
    MaskNode(const NodeContext& context, Alignment alignment);
    ~MaskNode() override;
    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;

protected:
    NodeContext maskContext();
    void setMaskChild(std::unique_ptr<ViewNode> child) { maskChild_ = std::move(child); }
    ViewNode& maskChild() const { return *maskChild_; }
    void setAlignment(Alignment alignment);
    CGSize measure(const ProposedSize& proposal) override { return child().sizeThatFits(proposal); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class MaskContainer;
    std::unique_ptr<MaskContainer> maskContainer_;
    std::unique_ptr<ViewNode> maskChild_;
    Alignment alignment_;
};

template <View Mask>
class MaskModifier<Mask>::Node : public MaskNode {
public:
    Node(const NodeContext& context, const MaskModifier& modifier)
        : MaskNode(context, modifier.alignment)
    {
        setMaskChild(makeNode(maskContext(), modifier.mask));
    }

protected:
    void updateModifier(const MaskModifier& modifier)
    {
        setAlignment(modifier.alignment);
        updateNode(maskChild(), modifier.mask);
    }
};

template <View Mask>
auto mask(Mask mask, Alignment alignment = {})
{
    return MaskModifier<Mask>{std::move(mask), alignment};
}

} // namespace platform
