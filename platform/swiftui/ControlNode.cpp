// SPDX-License-Identifier: MIT
#include "platform/swiftui/ControlNode.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

void ControlNode::refresh()
{
    forgetSources();
    readSources();
}

void ControlNode::readSurroundings(UIView& view)
{
    view.setSemanticContentAttribute(environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft
                                         ? UISemanticContentAttribute::forceRightToLeft
                                         : UISemanticContentAttribute::forceLeftToRight);
    // Text of another size takes another room.
    auto textSize = std::pair{environment<SizeCategoryKey>(), environment<TextScaleKey>()};
    if (auto former = std::exchange(textSize_, textSize); former && former != textSize)
        invalidateLayout();
    // Whoever finds the view and tints it keeps that until the surroundings have another tint.
    if (auto tint = environment<TintKey>(); tint != tint_) {
        tint_ = tint;
        view.setTintColor(tint);
    }
}

void ControlNode::readSurroundings(UIControl& control)
{
    readSurroundings(static_cast<UIView&>(control));
    control.setEnabled(environment<IsEnabledKey>());
}

CGSize ControlNode::wide(const ProposedSize& proposal, CGFloat usual, CGFloat least, CGFloat height)
{
    return {std::max(usableLength(proposal.width.value_or(usual)), least), height};
}

void ControlNode::nameView(UIView& view, const std::string& label)
{
    auto& properties = view.accessibility();
    if (properties.label == name_)
        properties.label = label;
    name_ = label;
}

} // namespace platform
