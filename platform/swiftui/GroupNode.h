// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ModifiedContent.h"
#include "platform/swiftui/ViewContainer.h"
#include "platform/uikit/UIView.h"

#include <memory>

namespace platform {

// The platform view of a group. Touches pass through where no content is; what stands outside of its bounds is hit too
// unless the group clips or is masked.
class GroupView : public UIView {
public:
    // Whether the group itself takes touches of its content, and of its empty parts: for gestures.
    enum class Touches { none, content, bounds };
    Touches touches = Touches::none;

    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    bool pointInside(CGPoint point) const override;
};

// A modifier whose content stands together in a platform view of its own, at the content's place, so that it can be faded,
// clipped, masked, turned or touched as a whole.
class GroupNode : public ModifierNode, public ViewContainer {
public:
    explicit GroupNode(const NodeContext& context,
                       std::shared_ptr<GroupView> group = std::make_shared<GroupView>());
    ~GroupNode() override;

    GroupView& group() const { return *group_; }
    const std::shared_ptr<GroupView>& sharedGroup() const { return group_; }
    UIView& containerView() const override { return *group_; }
    void appendContents(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        child().appendPlatformViews(views);
    }
    void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        views.push_back(group_);
    }

protected:
    NodeContext contentContext() override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    bool isPlaced() const { return isPlaced_; }

private:
    const std::shared_ptr<GroupView> group_;
    bool isPlaced_ = false;
};

} // namespace platform
