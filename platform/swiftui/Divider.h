// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

#include <optional>

namespace platform {

// A hairline across the direction of its stack.
struct Divider {
    class Node;
    bool operator==(const Divider&) const = default;
};

class Divider::Node final : public PlatformViewNode {
public:
    Node(const NodeContext& context, const Divider&);
    void update(const Divider&) { }
    bool isRigid(Axis axis) const override { return axis == thinAxis(); }
    void setStackAxis(std::optional<Axis> axis) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;

private:
    Axis thinAxis() const { return stackAxis_.value_or(Axis::vertical); }
    std::optional<Axis> stackAxis_;
};

} // namespace platform
