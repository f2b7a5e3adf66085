// SPDX-License-Identifier: MIT
#include "platform/swiftui/ScrollView.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIScrollView.h"

#include <algorithm>
#include <utility>

namespace platform {

ScrollNode::ScrollNode(const NodeContext& context, const ScrollViewOptions& options)
    : ContentViewNode(context)
    , options_(options)
    , scrollView_(std::make_shared<UIScrollView>())
    , contentView_(std::make_shared<UIView>())
{
    scrollView_->setClipsToBounds(true);
    scrollView_->addSubview(contentView_);
    applyOptions();
    setPlatformView(scrollView_);
}

ScrollNode::~ScrollNode() = default;

void ScrollNode::setOptions(const ScrollViewOptions& options)
{
    if (options == options_)
        return;
    options_ = options;
    applyOptions();
    invalidateLayout();
}

void ScrollNode::applyOptions()
{
    scrollView_->setShowsHorizontalScrollIndicator(options_.showsIndicators
                                                   && options_.axes.contains(AxisSet::horizontal));
    scrollView_->setShowsVerticalScrollIndicator(options_.showsIndicators
                                                 && options_.axes.contains(AxisSet::vertical));
}

ProposedSize ScrollNode::offerToContent(const ProposedSize& proposal) const
{
    return {options_.axes.contains(AxisSet::horizontal) ? std::nullopt : proposal.width,
            options_.axes.contains(AxisSet::vertical) ? std::nullopt : proposal.height};
}

CGSize ScrollNode::measure(const ProposedSize& proposal)
{
    if (proposal.width && proposal.height)
        return {*proposal.width, *proposal.height};
    return proposal.replacingUnspecified(content().sizeThatFits(offerToContent(proposal)));
}

void ScrollNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    ContentViewNode::arrange(rect, proposal);
    auto offer = offerToContent(ProposedSize::of(rect.size));
    auto size = content().sizeThatFits(offer);
    // Content that is shorter than the view across the axes stands in its middle.
    CGPoint origin{options_.axes.contains(AxisSet::horizontal) ? 0 : (rect.width() - size.width) / 2,
                   options_.axes.contains(AxisSet::vertical) ? 0 : (rect.height() - size.height) / 2};
    auto isMirrored = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft;
    auto scrollable = CGSize{options_.axes.contains(AxisSet::horizontal) ? size.width : rect.width(),
                             options_.axes.contains(AxisSet::vertical) ? size.height : rect.height()};
    if (isMirrored && options_.axes.contains(AxisSet::horizontal))
        origin.x = std::max(rect.width() - size.width, 0.0);
    contentView_->setFrame({{}, {std::max(scrollable.width, rect.width()), scrollable.height}});
    content().place({origin, size}, offer);
    scrollView_->setContentSize(scrollable);
    if (!std::exchange(isAtStart_, true) && isMirrored && scrollable.width > rect.width())
        scrollView_->setContentOffset({scrollable.width - rect.width(), 0});
}

} // namespace platform
