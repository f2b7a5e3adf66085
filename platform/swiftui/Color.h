// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGColor.h"
#include "platform/graphics/UIColor.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

#include <optional>

namespace platform {

// A colour that fills all that is offered.
struct Color {
    UIColor color;

    // Nothing for a colour that depends on where it is shown.
    std::optional<CGColor> cgColor() const;

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
