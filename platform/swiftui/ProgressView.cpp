// SPDX-License-Identifier: MIT
#include "platform/swiftui/ProgressView.h"

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/stacks.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIProgressView.h"

#include <algorithm>
#include <cmath>

namespace platform {

std::optional<double> ProgressView::partOf(std::optional<double> value, double total)
{
    if (!value || !(total > 0) || std::isnan(*value) || std::isnan(*value / total))
        return std::nullopt;
    return std::clamp(*value / total, 0.0, 1.0);
}

AnyView ProgressView::body() const
{
    bool isBar = *style == ProgressViewStyle::linear || (*style == ProgressViewStyle::automatic && part);
    bool showsTitle = !title.empty() && *labels == LabelsVisibility::visible;
    auto caption = [&] { return Text{title} | accessibilityHidden(); };
    if (isBar) {
        return AnyView(VStack{{.alignment = HorizontalAlignment::leading, .spacing = 6},
                              when(showsTitle, caption),
                              ProgressBar{part, title}});
    }
    auto dimmed = [&] { return caption() | foregroundColor(UIColor::secondaryLabel()); };
    return AnyView(VStack{{.spacing = 6}, ProgressWheel{title}, when(showsTitle, dimmed)});
}

// --- The bar -------------------------------------------------------------------------------------

ProgressBar::Node::Node(const NodeContext& context, const ProgressBar& view)
    : ControlNode(context)
    , record_(view)
    , bar_(std::make_shared<UIProgressView>())
{
    readSources();
    setPlatformView(bar_);
}

void ProgressBar::Node::update(const ProgressBar& view)
{
    if (view == record_)
        return;
    record_ = view;
    refresh();
}

CGSize ProgressBar::Node::measure(const ProposedSize& proposal)
{
    return wide(proposal, 200, 20, bar_->intrinsicContentSize().height);
}

void ProgressBar::Node::readSources()
{
    readSurroundings(*bar_);
    nameView(*bar_, record_.name);
    bar_->setDimmed(!environment<IsEnabledKey>());
    bar_->setIndeterminate(!record_.part);
    if (record_.part)
        bar_->setProgress(*record_.part, bar_->window() ? Animated::yes : Animated::no);
}

// --- The wheel -----------------------------------------------------------------------------------

ProgressWheel::Node::Node(const NodeContext& context, const ProgressWheel& view)
    : ControlNode(context)
    , record_(view)
    , wheel_(std::make_shared<UIActivityIndicatorView>())
{
    wheel_->startAnimating();
    readSources();
    setPlatformView(wheel_);
}

void ProgressWheel::Node::update(const ProgressWheel& view)
{
    if (view == record_)
        return;
    record_ = view;
    refresh();
}

void ProgressWheel::Node::readSources()
{
    readSurroundings(*wheel_);
    nameView(*wheel_, record_.name);
    wheel_->setColor(environment<ForegroundColorKey>());
}

} // namespace platform
