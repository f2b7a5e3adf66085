// SPDX-License-Identifier: MIT
#include "platform/swiftui/padding.h"

#include "platform/swiftui/EnvironmentValues.h"

#include <cmath>

namespace platform {

namespace {

// Negative lengths let the content reach outside.
CGFloat finite(CGFloat length)
{
    return std::isfinite(length) ? length : 0;
}

EdgeInsets finite(const EdgeInsets& insets)
{
    return {finite(insets.top), finite(insets.leading), finite(insets.bottom), finite(insets.trailing)};
}

std::optional<CGFloat> less(std::optional<CGFloat> length, CGFloat taken)
{
    return length ? std::optional(usableLength(*length - taken)) : std::nullopt;
}

} // namespace

ProposedSize PaddingModifier::Node::offerToContent(const ProposedSize& proposal) const
{
    auto insets = finite(insets_);
    return {less(proposal.width, insets.leading + insets.trailing),
            less(proposal.height, insets.top + insets.bottom)};
}

CGSize PaddingModifier::Node::measure(const ProposedSize& proposal)
{
    auto insets = finite(insets_);
    auto content = child().sizeThatFits(offerToContent(proposal));
    return {content.width + insets.leading + insets.trailing, content.height + insets.top + insets.bottom};
}

void PaddingModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    auto insets = finite(insets_);
    auto isMirrored = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    auto left = isMirrored ? insets.trailing : insets.leading;
    CGSize size{usableLength(rect.width() - insets.leading - insets.trailing),
                usableLength(rect.height() - insets.top - insets.bottom)};
    child().place({{rect.minX() + left, rect.minY() + insets.top}, size}, offerToContent(proposal));
}

CGFloat PaddingModifier::Node::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline)
        return ViewNode::guide(alignment, size);
    auto insets = finite(insets_);
    return insets.top
        + child().guide(alignment,
                        {usableLength(size.width - insets.leading - insets.trailing),
                         usableLength(size.height - insets.top - insets.bottom)});
}

void PaddingModifier::Node::updateModifier(const PaddingModifier& modifier)
{
    insets_ = modifier.insets;
    invalidateLayout();
}

} // namespace platform
