// SPDX-License-Identifier: MIT
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UIView.h"

namespace platform {

ViewControllerNode::~ViewControllerNode() = default;

void ViewControllerNode::adopt(std::shared_ptr<UIViewController> controller, std::function<void()> afterwards)
{
    controller_ = std::move(controller);
    host().controller().addChild(controller_);
    container().contentsDidChange();
    host().performAfterSync(
        [this, isMounted = std::weak_ptr(isMounted_), afterwards = std::move(afterwards)] {
            if (!isMounted.lock())
                return;
            controller_->didMove(&host().controller());
            afterwards();
        });
}

void ViewControllerNode::release()
{
    if (!controller_)
        return;
    isMounted_.reset();
    controller_->willMove(nullptr);
    if (auto view = controller_->viewIfLoaded())
        view->removeFromSuperview();
    controller_->removeFromParent();
    controller_.reset();
    container().contentsDidChange();
}

void ViewControllerNode::appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const
{
    if (!controller_)
        return;
    auto& view = controller_->view();
    view->accessibility().isHidden = context().environment->value<AccessibilityHiddenKey>(nullptr);
    views.push_back(view);
}

CGSize ViewControllerNode::measure(const ProposedSize& proposal)
{
    auto wanted = controller_->preferredContentSize();
    if (wanted.width > 0 && wanted.height > 0)
        return wanted;
    return proposal.replacingUnspecified();
}

void ViewControllerNode::arrange(CGRect rect, const ProposedSize&)
{
    placePlatformView(*controller_->view(), rect, isPlaced_);
}

} // namespace platform
