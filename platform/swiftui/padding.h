// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EdgeInsets.h"
#include "platform/swiftui/ModifiedContent.h"

namespace platform {

// Space around the content, which is offered the rest. A background that follows fills the space too.
struct PaddingModifier {
    EdgeInsets insets;
    class Node;
    bool operator==(const PaddingModifier&) const = default;
};

class PaddingModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const PaddingModifier& modifier)
        : ModifierNode(context)
        , insets_(modifier.insets)
    {
    }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const PaddingModifier& modifier);

private:
    ProposedSize offerToContent(const ProposedSize& proposal) const;
    EdgeInsets insets_;
};

inline constexpr CGFloat defaultPadding = 16;

inline auto padding(EdgeInsets insets)
{
    return PaddingModifier{insets};
}
inline auto padding(EdgeSet edges, CGFloat length = defaultPadding)
{
    auto at = [&](EdgeSet edge) { return edges.contains(edge) ? length : 0; };
    return PaddingModifier{
        {at(EdgeSet::top), at(EdgeSet::leading), at(EdgeSet::bottom), at(EdgeSet::trailing)}};
}
inline auto padding(CGFloat length = defaultPadding)
{
    return padding(EdgeSet::all, length);
}

} // namespace platform
