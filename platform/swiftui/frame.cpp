// SPDX-License-Identifier: MIT
#include "platform/swiftui/frame.h"

#include "platform/swiftui/alignedRect.h"

#include <algorithm>

namespace platform {

namespace {

std::optional<CGFloat> usableLength(std::optional<CGFloat> length)
{
    return length ? std::optional(platform::usableLength(*length)) : std::nullopt;
}

// The baseline of content that stands in a frame `size` large.
CGFloat guideInside(ViewNode& node, ViewNode& content, VerticalAlignment alignment, CGSize size,
                    const ProposedSize& offer, Alignment placing)
{
    auto contentSize = content.sizeThatFits(offer);
    auto place = alignedRect(node, content, contentSize, placing, {{}, size});
    return place.origin.y + content.guide(alignment, contentSize);
}

// A length between its limits. Where a limit is absent the content's own length is that limit.
CGFloat flexibleLength(std::optional<CGFloat> offered, std::optional<CGFloat> minimum,
                       std::optional<CGFloat> ideal, std::optional<CGFloat> maximum, CGFloat content)
{
    auto low = usableLength(minimum);
    auto high = usableLength(maximum);
    if (!offered)
        return std::clamp(usableLength(ideal).value_or(content), low.value_or(0),
                          std::max(low.value_or(0), high.value_or(std::max(content, low.value_or(0)))));
    if (!low && !high)
        return content;
    auto lower = low.value_or(high ? std::min(content, *high) : content);
    auto upper = std::max(lower, high.value_or(std::max(content, lower)));
    return std::clamp(*offered, lower, upper);
}

std::optional<CGFloat> flexibleOffer(std::optional<CGFloat> offered, std::optional<CGFloat> minimum,
                                     std::optional<CGFloat> ideal, std::optional<CGFloat> maximum)
{
    auto offer = offered ? offered : usableLength(ideal);
    if (!offer)
        return std::nullopt;
    if (auto low = usableLength(minimum))
        offer = std::max(*offer, *low);
    if (auto high = usableLength(maximum))
        offer = std::min(*offer, std::max(*high, usableLength(minimum).value_or(0)));
    return offer;
}

} // namespace

ProposedSize FrameModifier::Node::offerToContent(const ProposedSize& proposal) const
{
    return {options_.width ? usableLength(options_.width) : proposal.width,
            options_.height ? usableLength(options_.height) : proposal.height};
}

CGSize FrameModifier::Node::measure(const ProposedSize& proposal)
{
    if (options_.width && options_.height)
        return {*usableLength(options_.width), *usableLength(options_.height)};
    auto content = child().sizeThatFits(offerToContent(proposal));
    return {usableLength(options_.width).value_or(content.width),
            usableLength(options_.height).value_or(content.height)};
}

void FrameModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    auto offer = offerToContent(proposal);
    child().place(alignedRect(*this, child(), child().sizeThatFits(offer), options_.alignment, rect), offer);
}

CGFloat FrameModifier::Node::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline)
        return ViewNode::guide(alignment, size);
    return guideInside(*this, child(), alignment, size, offerToContent(ProposedSize::of(size)),
                       options_.alignment);
}

void FrameModifier::Node::updateModifier(const FrameModifier& modifier)
{
    options_ = modifier.options;
    invalidateLayout();
}

ProposedSize FlexibleFrameModifier::Node::offerToContent(const ProposedSize& proposal) const
{
    return {flexibleOffer(proposal.width, options_.minWidth, options_.idealWidth, options_.maxWidth),
            flexibleOffer(proposal.height, options_.minHeight, options_.idealHeight, options_.maxHeight)};
}

CGSize FlexibleFrameModifier::Node::measure(const ProposedSize& proposal)
{
    auto content = child().sizeThatFits(offerToContent(proposal));
    return {flexibleLength(proposal.width, options_.minWidth, options_.idealWidth, options_.maxWidth,
                           content.width),
            flexibleLength(proposal.height, options_.minHeight, options_.idealHeight, options_.maxHeight,
                           content.height)};
}

void FlexibleFrameModifier::Node::arrange(CGRect rect, const ProposedSize&)
{
    auto offer = offerToContent(ProposedSize::of(rect.size));
    child().place(alignedRect(*this, child(), child().sizeThatFits(offer), options_.alignment, rect), offer);
}

CGFloat FlexibleFrameModifier::Node::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline)
        return ViewNode::guide(alignment, size);
    return guideInside(*this, child(), alignment, size, offerToContent(ProposedSize::of(size)),
                       options_.alignment);
}

void FlexibleFrameModifier::Node::updateModifier(const FlexibleFrameModifier& modifier)
{
    options_ = modifier.options;
    invalidateLayout();
}

} // namespace platform
