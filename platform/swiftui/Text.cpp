// SPDX-License-Identifier: MIT
#include "platform/swiftui/Text.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UILabel.h"

#include <algorithm>

namespace platform {

namespace {

TextAlignment resolved(HorizontalAlignment alignment, LayoutDirection direction)
{
    if (alignment == HorizontalAlignment::center)
        return TextAlignment::center;
    auto isAtStart = alignment == HorizontalAlignment::leading;
    return isAtStart == (direction == LayoutDirection::leftToRight) ? TextAlignment::left
                                                                    : TextAlignment::right;
}

} // namespace

Text::Node::Node(const NodeContext& context, const Text& view)
    : PlatformViewNode(context)
    , label_(std::make_shared<UILabel>())
{
    label_->setText(view.text);
    label_->setUserInteractionEnabled(false);
    readEnvironment();
    setPlatformView(label_);
}

void Text::Node::update(const Text& view)
{
    if (view.text == label_->text())
        return;
    label_->setText(view.text);
    invalidateLayout();
}

void Text::Node::refresh()
{
    forgetSources();
    readEnvironment();
}

void Text::Node::readEnvironment()
{
    auto direction = environment<LayoutDirectionKey>();
    auto font = environment<FontKey>()
                    .value_or(Font::body())
                    .resolved(environment<SizeCategoryKey>(), environment<TextScaleKey>());
    auto lines = std::max(environment<LineLimitKey>().value_or(0), 0);
    label_->setTextColor(environment<ForegroundColorKey>().value_or(UIColor::label()));
    label_->setTextAlignment(resolved(environment<MultilineTextAlignmentKey>(), direction));
    auto changesSize = !(font == label_->font()) || lines != label_->numberOfLines();
    label_->setFont(std::move(font));
    label_->setNumberOfLines(lines);
    label_->setSemanticContentAttribute(direction == LayoutDirection::rightToLeft
                                            ? UISemanticContentAttribute::forceRightToLeft
                                            : UISemanticContentAttribute::forceLeftToRight);
    if (changesSize)
        invalidateLayout();
}

CGSize Text::Node::measure(const ProposedSize& proposal)
{
    auto natural = label_->sizeThatFits({unlimitedWidth, 0});
    if (!proposal.width || !(*proposal.width < natural.width))
        return natural;
    // Without any width there is nothing to see, and nothing that wrapping could tell.
    if (!(*proposal.width > 0))
        return {0, label_->font().lineHeight()};
    auto wrapped = label_->sizeThatFits({*proposal.width, 0});
    return {std::min(wrapped.width, *proposal.width), wrapped.height};
}

CGFloat Text::Node::guide(VerticalAlignment alignment, CGSize size)
{
    if (alignment < VerticalAlignment::firstTextBaseline || label_->text().empty())
        return ViewNode::guide(alignment, size);
    auto isNatural = !(size.width < label_->sizeThatFits({unlimitedWidth, 0}).width);
    auto baselines = label_->baselines(isNatural ? unlimitedWidth : size.width);
    return alignment == VerticalAlignment::firstTextBaseline ? baselines.first : baselines.last;
}

} // namespace platform
