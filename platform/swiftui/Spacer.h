// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/View.h"

#include <optional>

namespace platform {

// Empty space that takes what the other views of its row or column leave; outside of those, all that is offered.
struct Spacer {
    std::optional<CGFloat> minLength; // points; none: 8

    class Node;
    bool operator==(const Spacer&) const = default;
};

class Spacer::Node final : public ViewNode {
public:
    Node(const NodeContext& context, const Spacer& spacer)
        : ViewNode(context)
        , spacer_(spacer)
    {
    }
    void update(const Spacer& spacer);
    bool isSpacer() const override { return true; }
    bool isRigid(Axis axis) const override { return stackAxis_ && axis != *stackAxis_; }
    void setStackAxis(std::optional<Axis> axis) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect, const ProposedSize&) override { }

private:
    Spacer spacer_;
    std::optional<Axis> stackAxis_;
};

} // namespace platform
