// SPDX-License-Identifier: MIT
#include "platform/swiftui/GroupNode.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/PlatformViewNode.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// Whether something is seen of `view` there, although it may take no touches itself: text, a picture, a colour.
bool showsContentAt(const UIView& view, CGPoint point)
{
    return std::ranges::any_of(view.subviews(), [&](const auto& subview) {
        if (subview->isHidden() || subview->alpha() <= 0)
            return false;
        auto inside = subview->convertFrom(point, &view);
        if (auto* group = dynamic_cast<const GroupView*>(subview.get()))
            return group->pointInside(inside) && showsContentAt(*group, inside);
        return subview->pointInside(inside);
    });
}

} // namespace

std::shared_ptr<UIView> GroupView::hitTest(CGPoint point)
{
    auto hit = UIView::hitTest(point);
    if (hit.get() != this)
        return hit;
    bool isTouched = (touches == Touches::bounds && bounds().contains(point))
        || (touches != Touches::none && showsContentAt(*this, point));
    return isTouched ? hit : nullptr;
}

bool GroupView::pointInside(CGPoint point) const
{
    if (clipsToBounds() && !UIView::pointInside(point))
        return false;
    return !mask() || mask()->pointInside(point); // in the same coordinates
}

GroupNode::GroupNode(const NodeContext& context, std::shared_ptr<GroupView> group)
    : ModifierNode(context)
    , ViewContainer(context.host)
    , group_(std::move(group))
{
    if (context.environment->value<AccessibilityHiddenKey>(nullptr))
        group_->accessibility().isHidden = true;
    container().contentsDidChange();
}

GroupNode::~GroupNode()
{
    setChild(nullptr); // while the container that it stands in is alive
    container().contentsDidChange();
}

NodeContext GroupNode::contentContext()
{
    auto inner = ModifierNode::contentContext();
    inner.container = this;
    return inner;
}

void GroupNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    placePlatformView(*group_, rect, isPlaced_);
    child().place({{}, rect.size}, proposal);
}

} // namespace platform
