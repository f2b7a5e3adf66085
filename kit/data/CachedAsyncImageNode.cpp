// SPDX-License-Identifier: MIT
#include "kit/data/CachedAsyncImageNode.h"

#include "platform/swiftui/EnvironmentValues.h"

namespace zelk {

using namespace platform;

CachedAsyncImageModifier::Node::Node(const NodeContext& context, const CachedAsyncImageModifier& modifier)
    : ModifierNode(context)
    , model_(modifier.model)
{
}

// Content that is a list of views stands in the surrounding stack one by one, as without this; of what is offered to
// each nothing can be said then.
void CachedAsyncImageModifier::Node::appendLayoutNodes(std::vector<ViewNode*>& nodes)
{
    std::vector<ViewNode*> ofContent;
    child().appendLayoutNodes(ofContent);
    if (ofContent.size() == 1)
        nodes.push_back(this);
    else
        nodes.insert(nodes.end(), ofContent.begin(), ofContent.end());
}

void CachedAsyncImageModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    ModifierNode::arrange(rect, proposal);
    model_->notePlaced(proposal, rect.size, environment<DisplayScaleKey>());
}

} // namespace zelk
