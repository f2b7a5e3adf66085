// SPDX-License-Identifier: MIT
#include "platform/swiftui/Color.h"

#include "platform/uikit/UIView.h"

namespace platform {

std::optional<CGColor> Color::cgColor() const
{
    return color.isDynamic() ? std::nullopt : std::optional(color.cgColor());
}

Color::Node::Node(const NodeContext& context, const Color& view)
    : PlatformViewNode(context)
{
    auto ground = std::make_shared<UIView>();
    ground->setBackgroundColor(view.color);
    ground->setUserInteractionEnabled(false);
    setPlatformView(std::move(ground));
}

void Color::Node::update(const Color& view)
{
    platformView()->setBackgroundColor(view.color); // compares, and moves there when animated
}

} // namespace platform
