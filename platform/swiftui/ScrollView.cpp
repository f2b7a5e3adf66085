// SPDX-License-Identifier: MIT
#include "platform/swiftui/ScrollView.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/GroupNode.h"
#include "platform/uikit/UIScrollView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

ScrollNode::ScrollNode(const NodeContext& context, const ScrollViewOptions& options)
    : ContentViewNode(context)
    , options_(options)
    , scrollView_(std::make_shared<UIScrollView>())
    , contentView_(std::make_shared<GroupView>())
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
    // What would be endless is as long as the view.
    size = {std::isfinite(size.width) ? size.width : rect.width(),
            std::isfinite(size.height) ? size.height : rect.height()};
    auto isHorizontal = options_.axes.contains(AxisSet::horizontal);
    auto isVertical = options_.axes.contains(AxisSet::vertical);
    // Content that is shorter than the view across the axes stands in its middle.
    CGPoint origin{isHorizontal ? 0 : (rect.width() - size.width) / 2,
                   isVertical ? 0 : (rect.height() - size.height) / 2};
    CGSize scrollable{isHorizontal ? size.width : rect.width(), isVertical ? size.height : rect.height()};
    auto offset = scrollView_->contentOffset();
    if (isHorizontal && environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft) {
        origin.x = std::max(rect.width() - size.width, 0.0);
        // Reading begins at the right end: what is seen keeps its distance from there.
        auto fromEnd = std::exchange(isAtStart_, true) ? widthSeen_ - offset.x : rect.width();
        offset.x = std::max(scrollable.width, rect.width()) - fromEnd;
        widthSeen_ = std::max(scrollable.width, rect.width());
    }
    UIView::performWithoutAnimation(
        [&] { contentView_->setFrame({{}, {std::max(scrollable.width, rect.width()), scrollable.height}}); });
    content().place({origin, size}, offer);
    if (offset == scrollView_->contentOffset())
        scrollView_->setContentSize(scrollable);
    else
        scrollView_->moveContent(scrollable, offset);
}

} // namespace platform
