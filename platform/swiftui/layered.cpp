// SPDX-License-Identifier: MIT
#include "platform/swiftui/layered.h"

#include "platform/swiftui/alignedRect.h"

namespace platform {

void LayerNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    if (secondary_ && layer_ == Layer::behind)
        visit(*secondary_);
    ModifierNode::forEachChild(visit);
    if (secondary_ && layer_ == Layer::inFront)
        visit(*secondary_);
}

void LayerNode::setSecondary(std::unique_ptr<ViewNode> node, Layer layer, Alignment alignment)
{
    secondary_ = std::move(node);
    layer_ = layer;
    alignment_ = alignment;
}

void LayerNode::invalidateAlignment(Alignment alignment)
{
    if (alignment == alignment_)
        return;
    alignment_ = alignment;
    invalidateLayout();
}

void LayerNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    child().place(rect, proposal);
    auto offer = ProposedSize::of(rect.size);
    secondary_->place(alignedRect(*this, *secondary_, secondary_->sizeThatFits(offer), alignment_, rect),
                      offer);
}

} // namespace platform
