// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/ViewContainer.h"

#include <functional>
#include <memory>

namespace platform {

// The node of a primitive whose platform view holds declarative content: a button its label, a scroll view what it
// scrolls. The subclass mounts the content, in `contentContext()`, and lays it out in the container's coordinates.
class ContentViewNode : public PlatformViewNode, public ViewContainer {
public:
    explicit ContentViewNode(const NodeContext& context);
    ~ContentViewNode() override;

    void forEachChild(const std::function<void(ViewNode&)>& visit) const override;
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override;

protected:
    virtual NodeContext contentContext();
    ViewNode& content() const { return *content_; }
    void setContent(std::unique_ptr<ViewNode> content) { content_ = std::move(content); }

private:
    std::unique_ptr<ViewNode> content_;
};

} // namespace platform
