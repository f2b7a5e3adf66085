// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/View.h"

namespace platform {

// Nothing: takes no place, not even the spacing of a stack.
struct EmptyView {
    class Node;
    bool operator==(const EmptyView&) const = default;
};

class EmptyView::Node final : public ViewNode {
public:
    Node(const NodeContext& context, const EmptyView&)
        : ViewNode(context)
    {
    }
    void update(const EmptyView&) { }
    void appendLayoutNodes(std::vector<ViewNode*>&) override { }
    bool isRigid(Axis) const override { return true; }
};

} // namespace platform
