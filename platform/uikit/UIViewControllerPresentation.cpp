// SPDX-License-Identifier: MIT
// What a controller presents, and who presents it. The outermost parent speaks for all controllers inside of it.
#include "platform/uikit/UIViewController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewControllerAncestry_p.h"
#include "platform/uikit/UIWindow.h"

namespace platform {

namespace {

const Logger& presentationLog()
{
    static const Logger log("org.zelk.uikit", "presentation");
    return log;
}

} // namespace

std::shared_ptr<UIViewController> UIViewController::outermostParent() const
{
    auto outermost = std::const_pointer_cast<UIViewController>(
        std::static_pointer_cast<const UIViewController>(shared_from_this()));
    while (auto above = outermost->parent())
        outermost = above;
    return outermost;
}

void UIViewController::present(std::shared_ptr<UIViewController> controller, Animated animated,
                               std::function<void()> completion)
{
    assertOnMainThread();
    precondition(controller != nullptr, "a null controller was presented");
    auto presenter = outermostParent();
    if (presenter->presentation_)
        return presentationLog().error("a controller was presented by one that is presenting already");
    auto window = view_ ? view_->window() : nullptr;
    if (!window)
        return presentationLog().error("a controller was presented by one whose view is in no window");
    precondition(!controller->parent(), "a controller was presented that another one contains");
    const auto* link = controller->associatedObject<PresentationLink>(presentationKey);
    precondition(controller != presenter && (!link || link->expired()),
                 "a controller was presented that is presented already");
    auto presentation = controller->makePresentationController(presenter);
    presenter->presentation_ = presentation;
    presentation->present(*window, animated, std::move(completion));
}

void UIViewController::dismiss(Animated animated, std::function<void()> completion)
{
    assertOnMainThread();
    auto presenter = outermostParent();
    if (!presenter->presentation_)
        presenter = presenter->presentingViewController();
    if (auto presentation = presenter ? presenter->presentation_ : nullptr)
        presentation->dismiss(animated, std::move(completion));
    else if (completion)
        completion();
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const
{
    auto presenter = outermostParent();
    return presenter->presentation_ ? presenter->presentation_->presentedViewController() : nullptr;
}

std::shared_ptr<UIViewController> UIViewController::presentingViewController() const
{
    const auto presented = outermostParent();
    const auto* link = presented->associatedObject<PresentationLink>(presentationKey);
    const auto presentation = link ? link->lock() : nullptr;
    return presentation ? presentation->presentingViewController() : nullptr;
}

namespace {

std::shared_ptr<UIPresentationController> presentationOf(const UIViewController& controller)
{
    const auto* link = controller.associatedObject<PresentationLink>(presentationKey);
    return link ? link->lock() : nullptr;
}

} // namespace

bool UIViewController::isBeingPresented() const
{
    auto presentation = presentationOf(*this);
    return presentation && presentation->state_ == UIPresentationController::State::presenting;
}

bool UIViewController::isBeingDismissed() const
{
    auto presentation = presentationOf(*this);
    return presentation && presentation->state_ == UIPresentationController::State::dismissing;
}

void UIViewController::setModalPresentationStyle(UIModalPresentationStyle style)
{
    assertOnMainThread();
    modalPresentationStyle_ = style;
}

void UIViewController::setModalTransitionStyle(UIModalTransitionStyle style)
{
    assertOnMainThread();
    modalTransitionStyle_ = style;
}

std::shared_ptr<UIPresentationController>
UIViewController::makePresentationController(const std::shared_ptr<UIViewController>& presenting)
{
    auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    switch (modalPresentationStyle_) {
    case UIModalPresentationStyle::automatic:
    case UIModalPresentationStyle::pageSheet:
    case UIModalPresentationStyle::formSheet:
        return std::make_shared<UISheetPresentationController>(self, presenting);
    case UIModalPresentationStyle::popover:
        return std::make_shared<UIPopoverPresentationController>(self, presenting);
    case UIModalPresentationStyle::fullScreen:
    case UIModalPresentationStyle::overFullScreen:
    case UIModalPresentationStyle::none:
        break;
    }
    return std::make_shared<UIPresentationController>(self, presenting);
}

bool UIViewController::isAppearanceHeld() const
{
    if (holdsAppearance_)
        return true;
    auto above = parent();
    return above && above->isAppearanceHeld();
}

// Whoever presents from a window that it has left has nothing to present in. A view that its own presentation has taken out
// comes back.
void UIViewController::viewDidLeaveWindow()
{
    auto presentation = presentation_;
    if (presentation && presentation->presentersPlace_.expired())
        presentation->abandon();
}

} // namespace platform
