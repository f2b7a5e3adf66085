// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ViewNode.h"

#include <memory>

namespace platform {

// The node of a primitive that is one platform view. The subclass makes the view and keeps it up to date; this
// one inserts it in its container and places it.
class PlatformViewNode : public ViewNode {
public:
    explicit PlatformViewNode(const NodeContext& context)
        : ViewNode(context)
    {
    }
    ~PlatformViewNode() override;

    const std::shared_ptr<UIView>& platformView() const { return view_; }
    void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        views.push_back(view_);
    }
    void appendContentViews(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        views.push_back(view_);
    }

protected:
    // Once, in the subclass's constructor.
    void setPlatformView(std::shared_ptr<UIView> view);
    // The default asks the view.
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    std::shared_ptr<UIView> view_;
    bool isPlaced_ = false;
};

// Places a platform view; the first time without an animation, for it comes from nowhere.
void placePlatformView(UIView& view, CGRect rect, bool& isPlaced);

} // namespace platform
