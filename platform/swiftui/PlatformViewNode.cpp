// SPDX-License-Identifier: MIT
#include "platform/swiftui/PlatformViewNode.h"

#include "platform/foundation/Precondition.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/ViewContainer.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

PlatformViewNode::~PlatformViewNode()
{
    if (view_)
        container().contentsDidChange();
}

void PlatformViewNode::setPlatformView(std::shared_ptr<UIView> view)
{
    precondition(!view_ && view, "a node has one platform view for its life");
    view_ = std::move(view);
    if (context().environment->value<AccessibilityHiddenKey>(nullptr))
        view_->accessibility().isHidden = true;
    container().contentsDidChange();
}

CGSize PlatformViewNode::measure(const ProposedSize& proposal)
{
    auto available = proposal.replacingUnspecified(ProposedSize::infinite().replacingUnspecified());
    return view_->sizeThatFits(available);
}

void PlatformViewNode::arrange(CGRect rect, const ProposedSize&)
{
    placePlatformView(*view_, rect, isPlaced_);
}

void placePlatformView(UIView& view, CGRect rect, bool& isPlaced)
{
    auto move = [&] {
        // Not the frame: a view may be turned or scaled, and its frame is then what it covers.
        view.setBounds({view.bounds().origin, rect.size});
        view.setCenter(rect.center());
    };
    if (std::exchange(isPlaced, true))
        move();
    else
        UIView::performWithoutAnimation(move);
}

} // namespace platform
