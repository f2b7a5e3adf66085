// SPDX-License-Identifier: MIT
#include "platform/swiftui/StackNode.h"

namespace platform {

CGFloat StackNode::guide(VerticalAlignment alignment, CGSize size)
{
    auto parts = layoutParts();
    if (alignment < VerticalAlignment::firstTextBaseline || parts.empty())
        return ViewNode::guide(alignment, size);
    return layout_.guideOf(parts, alignment, size);
}

CGSize StackNode::measure(const ProposedSize& proposal)
{
    return layout_.sizeOf(layoutParts(), proposal);
}

void StackNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    layout_.arrange(layoutParts(), rect, proposal, direction());
}

void StackNode::setLayout(const StackLayout& layout)
{
    if (layout == layout_)
        return;
    layout_ = layout;
    invalidateLayout();
}

} // namespace platform
