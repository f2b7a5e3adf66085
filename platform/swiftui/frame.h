// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <optional>

namespace platform {

// A place of a fixed width or height, in which the content stands by the alignment. An absent length is the content's.
struct FrameOptions {
    std::optional<CGFloat> width;
    std::optional<CGFloat> height;
    Alignment alignment;
    bool operator==(const FrameOptions&) const = default;
};

struct FrameModifier {
    FrameOptions options;
    class Node;
    bool operator==(const FrameModifier&) const = default;
};

class FrameModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const FrameModifier& modifier)
        : ModifierNode(context)
        , options_(modifier.options)
    {
    }
    bool isRigid(Axis axis) const override
    {
        return (axis == Axis::horizontal ? options_.width : options_.height) || ModifierNode::isRigid(axis);
    }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const FrameModifier& modifier);

private:
    ProposedSize offerToContent(const ProposedSize& proposal) const;
    FrameOptions options_;
};

inline auto frame(FrameOptions options)
{
    return FrameModifier{options};
}

// A place whose lengths give way: what is offered, kept between the limits. An absent minimum or maximum is the
// content's length; an infinite maximum takes all that is offered.
struct FlexibleFrameOptions {
    std::optional<CGFloat> minWidth, idealWidth, maxWidth;
    std::optional<CGFloat> minHeight, idealHeight, maxHeight;
    Alignment alignment;
    bool operator==(const FlexibleFrameOptions&) const = default;
};

struct FlexibleFrameModifier {
    FlexibleFrameOptions options;
    class Node;
    bool operator==(const FlexibleFrameModifier&) const = default;
};

class FlexibleFrameModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const FlexibleFrameModifier& modifier)
        : ModifierNode(context)
        , options_(modifier.options)
    {
    }
    bool isRigid(Axis) const override { return false; }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const FlexibleFrameModifier& modifier);

private:
    ProposedSize offerToContent(const ProposedSize& proposal) const;
    FlexibleFrameOptions options_;
};

inline auto flexibleFrame(FlexibleFrameOptions options)
{
    return FlexibleFrameModifier{options};
}

} // namespace platform
