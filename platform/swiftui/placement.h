// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"

#include <optional>

namespace platform {

// --- Ideal size ------------------------------------------------------------------------------------

struct FixedSizeOptions {
    bool horizontal = true;
    bool vertical = true;
    bool operator==(const FixedSizeOptions&) const = default;
};

// The content takes its ideal length on these axes, whatever is offered: a text is not cut.
struct FixedSizeModifier {
    FixedSizeOptions options;
    class Node;
    bool operator==(const FixedSizeModifier&) const = default;
};

class FixedSizeModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const FixedSizeModifier& modifier)
        : ModifierNode(context)
        , options_(modifier.options)
    {
    }
    bool isRigid(Axis axis) const override
    {
        return (axis == Axis::horizontal ? options_.horizontal : options_.vertical)
            || ModifierNode::isRigid(axis);
    }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const FixedSizeModifier& modifier);

private:
    ProposedSize offerToContent(const ProposedSize& proposal) const;
    FixedSizeOptions options_;
};

inline auto fixedSize(FixedSizeOptions options = {})
{
    return FixedSizeModifier{options};
}

// --- Elsewhere -------------------------------------------------------------------------------------

// The content is shown moved by so many points to the right and down; its place stays where it was.
struct OffsetModifier {
    CGVector by;
    class Node;
    bool operator==(const OffsetModifier&) const = default;
};

class OffsetModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const OffsetModifier& modifier)
        : ModifierNode(context)
        , by_(modifier.by)
    {
    }

protected:
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const OffsetModifier& modifier);

private:
    CGVector by_;
};

struct OffsetOptions {
    CGFloat x = 0;
    CGFloat y = 0;
};
inline auto offset(OffsetOptions options)
{
    return OffsetModifier{{options.x, options.y}};
}

// Takes all that is offered and shows the content with its centre at that point of it.
struct PositionModifier {
    CGPoint center;
    class Node;
    bool operator==(const PositionModifier&) const = default;
};

class PositionModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const PositionModifier& modifier)
        : ModifierNode(context)
        , center_(modifier.center)
    {
    }
    bool isRigid(Axis) const override { return false; }

protected:
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const PositionModifier& modifier);

private:
    CGPoint center_;
};

inline auto position(CGPoint center)
{
    return PositionModifier{center};
}

// --- Proportions -----------------------------------------------------------------------------------

enum class ContentMode { fit, fill };

// Offers the content the largest place inside of what is offered (fit), or the smallest around it (fill), that has this
// width by height; none keeps the content's own proportions.
struct AspectRatioModifier {
    std::optional<CGFloat> ratio;
    ContentMode mode = ContentMode::fit;
    class Node;
    bool operator==(const AspectRatioModifier&) const = default;
};

class AspectRatioModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const AspectRatioModifier& modifier)
        : ModifierNode(context)
        , modifier_(modifier)
    {
    }
    bool isRigid(Axis) const override { return false; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void updateModifier(const AspectRatioModifier& modifier);

private:
    ProposedSize offerToContent(const ProposedSize& proposal);
    AspectRatioModifier modifier_;
};

inline auto aspectRatio(std::optional<CGFloat> ratio, ContentMode mode = ContentMode::fit)
{
    return AspectRatioModifier{ratio, mode};
}
inline auto scaledToFit()
{
    return aspectRatio(std::nullopt, ContentMode::fit);
}
inline auto scaledToFill()
{
    return aspectRatio(std::nullopt, ContentMode::fill);
}

// --- Order -----------------------------------------------------------------------------------------

// Views of a higher priority get their space in a row or column before the others; the default is 0.
struct LayoutPriorityModifier {
    double priority = 0;
    class Node;
    bool operator==(const LayoutPriorityModifier&) const = default;
};

class LayoutPriorityModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const LayoutPriorityModifier& modifier)
        : ModifierNode(context)
        , priority_(modifier.priority)
    {
    }
    double layoutPriority() const override { return priority_; }

protected:
    void updateModifier(const LayoutPriorityModifier& modifier);

private:
    double priority_;
};

inline auto layoutPriority(double priority)
{
    return LayoutPriorityModifier{priority};
}

// Higher ones are in front of the views around them, whatever their order; the default is 0.
struct ZIndexModifier {
    double index = 0;
    class Node;
    bool operator==(const ZIndexModifier&) const = default;
};

class ZIndexModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const ZIndexModifier& modifier)
        : ModifierNode(context)
        , index_(modifier.index)
    {
    }
    void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const override;

protected:
    void updateModifier(const ZIndexModifier& modifier);

private:
    double index_;
};

inline auto zIndex(double index)
{
    return ZIndexModifier{index};
}

} // namespace platform
