// SPDX-License-Identifier: MIT
#include "platform/swiftui/ZStack.h"

#include "platform/swiftui/alignedRect.h"

#include <algorithm>

namespace platform {

namespace {

bool isBaseline(VerticalAlignment alignment)
{
    return alignment >= VerticalAlignment::firstTextBaseline;
}

// The highest line on which parts that are aligned by a baseline can stand.
CGFloat baselineOf(const std::vector<ViewNode*>& parts, VerticalAlignment alignment,
                   const ProposedSize& proposal)
{
    CGFloat line = 0;
    for (auto* part : parts)
        line = std::max(line, part->guide(alignment, part->sizeThatFits(proposal)));
    return line;
}

} // namespace

bool DepthStackNode::isRigid(Axis axis) const
{
    return std::ranges::all_of(layoutParts(), [axis](ViewNode* part) {
        part->setStackAxis(std::nullopt);
        return part->isRigid(axis);
    });
}

CGSize DepthStackNode::measure(const ProposedSize& proposal)
{
    CGSize size;
    CGFloat below = 0; // the line of baselines
    auto parts = layoutParts();
    for (auto* part : parts) {
        part->setStackAxis(std::nullopt);
        auto each = part->sizeThatFits(proposal);
        size.width = std::max(size.width, each.width);
        size.height = std::max(size.height, each.height);
        if (isBaseline(options_.alignment.vertical))
            below = std::max(below, each.height - part->guide(options_.alignment.vertical, each));
    }
    if (isBaseline(options_.alignment.vertical))
        size.height = std::max(size.height, baselineOf(parts, options_.alignment.vertical, proposal) + below);
    return size;
}

void DepthStackNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    auto parts = layoutParts();
    auto line = isBaseline(options_.alignment.vertical)
        ? baselineOf(parts, options_.alignment.vertical, proposal)
        : 0;
    for (auto* part : parts) {
        auto size = part->sizeThatFits(proposal);
        auto place = alignedRect(*this, *part, size, options_.alignment, rect);
        if (isBaseline(options_.alignment.vertical))
            place.origin.y = rect.minY() + line - part->guide(options_.alignment.vertical, size);
        part->place(place, proposal);
    }
}

CGFloat DepthStackNode::guide(VerticalAlignment alignment, CGSize size)
{
    auto parts = layoutParts();
    if (!isBaseline(alignment) || parts.empty())
        return ViewNode::guide(alignment, size);
    // Of the view in front.
    auto proposal = ProposedSize::of(size);
    auto& front = *parts.back();
    auto frontSize = front.sizeThatFits(proposal);
    return alignedRect(*this, front, frontSize, options_.alignment, {{}, size}).minY()
        + front.guide(alignment, frontSize);
}

void DepthStackNode::setOptions(const ZStackOptions& options)
{
    if (options == options_)
        return;
    options_ = options;
    invalidateLayout();
}

} // namespace platform
