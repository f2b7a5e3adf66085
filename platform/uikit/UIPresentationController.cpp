// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPresentationController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIViewControllerAncestry_p.h"

namespace platform {

UIPresentationController::UIPresentationController(std::shared_ptr<UIViewController> presented,
                                                   std::weak_ptr<UIViewController> presenting)
    : presented_(std::move(presented))
    , presenting_(std::move(presenting))
{
    precondition(presented_ != nullptr, "a presentation presents a controller");
}

std::shared_ptr<UIView> UIPresentationController::presentedView() const
{
    return presented_->view();
}

void UIPresentationController::beginPresentation()
{
    assertOnMainThread();
    presented_->setAssociatedObject(std::string(presentationKey), PresentationLink(sharedFrom(this)));
}

void UIPresentationController::endPresentation()
{
    assertOnMainThread();
    const auto* link = presented_->associatedObject<PresentationLink>(presentationKey);
    // A later presentation of the same controller is not this one's to end.
    if (link && link->lock().get() == this)
        presented_->removeAssociatedObject(presentationKey);
}

} // namespace platform
