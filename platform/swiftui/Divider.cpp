// SPDX-License-Identifier: MIT
#include "platform/swiftui/Divider.h"

#include "platform/graphics/UIColor.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIView.h"

namespace platform {

Divider::Node::Node(const NodeContext& context, const Divider&)
    : PlatformViewNode(context)
{
    auto line = std::make_shared<UIView>();
    line->setBackgroundColor(UIColor::separator());
    line->setUserInteractionEnabled(false);
    setPlatformView(std::move(line));
}

void Divider::Node::setStackAxis(std::optional<Axis> axis)
{
    if (axis == stackAxis_)
        return;
    stackAxis_ = axis;
    invalidateLayout();
}

CGSize Divider::Node::measure(const ProposedSize& proposal)
{
    auto size = proposal.replacingUnspecified();
    auto hairline = 1 / environment<DisplayScaleKey>();
    (thinAxis() == Axis::horizontal ? size.width : size.height) = hairline;
    return size;
}

} // namespace platform
