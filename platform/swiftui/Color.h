// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

namespace platform {

// A colour that fills all that is offered.
struct Color {
    UIColor color;

    class Node;
    bool operator==(const Color&) const = default;
};

class Color::Node final : public PlatformViewNode {
public:
    Node(const NodeContext& context, const Color& view);
    void update(const Color& view);

protected:
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }
};

} // namespace platform
