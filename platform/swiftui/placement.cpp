// SPDX-License-Identifier: MIT
#include "platform/swiftui/placement.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ViewContainer.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

// --- Ideal size ------------------------------------------------------------------------------------

ProposedSize FixedSizeModifier::Node::offerToContent(const ProposedSize& proposal) const
{
    return {options_.horizontal ? std::nullopt : proposal.width,
            options_.vertical ? std::nullopt : proposal.height};
}

CGSize FixedSizeModifier::Node::measure(const ProposedSize& proposal)
{
    return child().sizeThatFits(offerToContent(proposal));
}

void FixedSizeModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    child().place(rect, offerToContent(proposal));
}

void FixedSizeModifier::Node::updateModifier(const FixedSizeModifier& modifier)
{
    options_ = modifier.options;
    invalidateLayout();
}

// --- Elsewhere -------------------------------------------------------------------------------------

namespace {

CGFloat finite(CGFloat length)
{
    return std::isfinite(length) ? length : 0;
}

} // namespace

void OffsetModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    child().place(rect.offsetBy(finite(by_.dx), finite(by_.dy)), proposal);
}

void OffsetModifier::Node::updateModifier(const OffsetModifier& modifier)
{
    by_ = modifier.by;
    invalidateLayout();
}

void PositionModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    auto size = child().sizeThatFits(proposal);
    auto left = finite(center_.x) - size.width / 2;
    if (environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft)
        left = rect.width() - left - size.width;
    child().place({{rect.minX() + left, rect.minY() + finite(center_.y) - size.height / 2}, size}, proposal);
}

void PositionModifier::Node::updateModifier(const PositionModifier& modifier)
{
    center_ = modifier.center;
    invalidateLayout();
}

// --- Proportions -----------------------------------------------------------------------------------

ProposedSize AspectRatioModifier::Node::offerToContent(const ProposedSize& proposal)
{
    auto ideal = child().sizeThatFits(ProposedSize::unspecified());
    auto ratio = modifier_.ratio.value_or(ideal.width / ideal.height);
    if (!(ratio > 0) || std::isinf(ratio))
        return proposal;
    auto isUsable = [](std::optional<CGFloat> length) { return length && std::isfinite(*length); };
    auto hasWidth = isUsable(proposal.width), hasHeight = isUsable(proposal.height);
    if (!hasWidth && !hasHeight)
        return proposal.width || proposal.height ? proposal : ProposedSize{ideal.width, ideal.width / ratio};
    if (!hasWidth)
        return {*proposal.height * ratio, proposal.height};
    if (!hasHeight)
        return {proposal.width, *proposal.width / ratio};
    auto isBoundByWidth = *proposal.width < *proposal.height * ratio;
    if (isBoundByWidth == (modifier_.mode == ContentMode::fit))
        return {proposal.width, *proposal.width / ratio};
    return {*proposal.height * ratio, proposal.height};
}

CGSize AspectRatioModifier::Node::measure(const ProposedSize& proposal)
{
    return child().sizeThatFits(offerToContent(proposal));
}

void AspectRatioModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    child().place(rect, offerToContent(proposal));
}

void AspectRatioModifier::Node::updateModifier(const AspectRatioModifier& modifier)
{
    modifier_ = modifier;
    invalidateLayout();
}

// --- Order -----------------------------------------------------------------------------------------

void LayoutPriorityModifier::Node::updateModifier(const LayoutPriorityModifier& modifier)
{
    priority_ = modifier.priority;
    // What it decides about is its stack's.
    if (parent())
        parent()->invalidateLayout();
}

void ZIndexModifier::Node::appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const
{
    auto first = static_cast<std::ptrdiff_t>(views.size());
    ModifierNode::appendPlatformViews(views);
    for (auto view = views.begin() + first; view != views.end(); ++view)
        (*view)->setZPosition(std::isnan(index_) ? 0 : index_);
}

void ZIndexModifier::Node::updateModifier(const ZIndexModifier& modifier)
{
    index_ = modifier.index;
    container().contentsDidChange();
}

} // namespace platform
