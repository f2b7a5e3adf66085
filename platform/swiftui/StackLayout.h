// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ViewNode.h"

#include <vector>

namespace platform {

// Where views stand one after the other: the rules of rows and columns, apart from who owns the views. Each view is
// asked what it takes of what is left: those of the highest priority first and among them the least flexible ones; each
// is offered an equal share of the rest. Spacers come last. Lengths that are infinite or no numbers do no harm.
struct StackLayout {
    Axis axis = Axis::vertical;
    CGFloat spacing = 8; // points; negative ones make views overlap
    HorizontalAlignment horizontalAlignment = HorizontalAlignment::center; // in columns
    VerticalAlignment verticalAlignment = VerticalAlignment::center;       // in rows
    bool operator==(const StackLayout&) const = default;

    enum class Direction { leftToRight, rightToLeft };

    CGSize sizeOf(const std::vector<ViewNode*>& parts, const ProposedSize& proposal) const;
    void arrange(const std::vector<ViewNode*>& parts, CGRect rect, const ProposedSize& proposal,
                 Direction direction) const;
    // The baseline of all: of a column the one of its first or last part, of a row the highest or lowest.
    CGFloat guideOf(const std::vector<ViewNode*>& parts, VerticalAlignment alignment, CGSize size) const;
    bool isRigid(const std::vector<ViewNode*>& parts, Axis along) const;

private:
    struct Part {
        ViewNode* node;
        ProposedSize offer;
        CGSize size;
        CGFloat start = 0; // along the axis
    };
    std::vector<Part> distribute(const std::vector<ViewNode*>& nodes, const ProposedSize& proposal) const;
    ProposedSize offer(std::optional<CGFloat> length, std::optional<CGFloat> across) const;
    CGFloat length(CGSize size) const { return axis == Axis::horizontal ? size.width : size.height; }
    CGFloat across(CGSize size) const { return axis == Axis::horizontal ? size.height : size.width; }
    CGFloat crossGuide(const Part& part) const;
    CGFloat usableSpacing() const;
};

} // namespace platform
