// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChildrenNode.h"

namespace platform {

// The node of a row or column.
class StackNode : public ChildrenNode {
public:
    StackNode(const NodeContext& context, const StackLayout& layout)
        : ChildrenNode(context)
        , layout_(layout)
    {
    }
    bool isRigid(Axis axis) const override { return layout_.isRigid(layoutParts(), axis); }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void setLayout(const StackLayout& layout);

private:
    StackLayout layout_;
};

} // namespace platform
