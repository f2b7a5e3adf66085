// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <string>

namespace platform {

class UILabel;

// A text in the font, the colour, the direction and the number of lines of its surroundings; by default as many lines as
// its width takes. Its height does not give way: what is offered less is overlapped, not cut.
struct Text {
    std::string text; // UTF-8

    class Node;
    bool operator==(const Text&) const = default;
};

class Text::Node final : public PlatformViewNode {
public:
    Node(const NodeContext& context, const Text& view);
    void update(const Text& view);
    void refresh() override;
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;

private:
    void readEnvironment();

    std::shared_ptr<UILabel> label_;
};

} // namespace platform
