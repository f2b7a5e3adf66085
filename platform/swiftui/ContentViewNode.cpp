// SPDX-License-Identifier: MIT
#include "platform/swiftui/ContentViewNode.h"

#include "platform/uikit/UIView.h"

namespace platform {

ContentViewNode::ContentViewNode(const NodeContext& context)
    : PlatformViewNode(context)
    , ViewContainer(context.host)
{
}

ContentViewNode::~ContentViewNode()
{
    content_.reset(); // while the container that it stands in is alive
}

void ContentViewNode::forEachChild(const std::function<void(ViewNode&)>& visit) const
{
    if (content_)
        visit(*content_);
}

void ContentViewNode::appendContents(std::vector<std::shared_ptr<UIView>>& views) const
{
    if (content_)
        content_->appendPlatformViews(views);
}

NodeContext ContentViewNode::contentContext()
{
    auto inner = context().below(*this);
    inner.container = this;
    return inner;
}

} // namespace platform
