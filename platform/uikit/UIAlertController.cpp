// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/AlertPresentationController.h"
#include "platform/uikit/AlertView.h"

#include <algorithm>

namespace platform {

UIAlertController::UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                                     UIAlertControllerStyle preferredStyle)
    : preferredStyle_(preferredStyle)
    , message_(std::move(message))
{
    UIViewController::setTitle(std::move(title).value_or(""));
    setModalPresentationStyle(UIModalPresentationStyle::overFullScreen);
}

UIAlertController::~UIAlertController()
{
    for (const auto& action : actions_)
        action->onChange_ = nullptr;
}

void UIAlertController::setTitle(std::string title)
{
    UIViewController::setTitle(std::move(title));
    contentChanged();
}

void UIAlertController::setMessage(std::optional<std::string> message)
{
    assertOnMainThread();
    message_ = std::move(message);
    contentChanged();
}

void UIAlertController::addAction(std::shared_ptr<UIAlertAction> action)
{
    assertOnMainThread();
    precondition(action != nullptr, "a null action was added to an alert");
    precondition(!action->onChange_, "an action was added to a second alert");
    auto isCancel = [](const auto& other) { return other->style() == UIAlertActionStyle::cancel; };
    precondition(!isCancel(action) || std::ranges::none_of(actions_, isCancel),
                 "an alert was given a second action that cancels");
    // Cleared before this object goes.
    action->onChange_ = [this] { contentChanged(); };
    actions_.push_back(std::move(action));
    contentChanged();
}

void UIAlertController::setPreferredAction(std::shared_ptr<UIAlertAction> action)
{
    assertOnMainThread();
    precondition(!action || std::ranges::find(actions_, action) != actions_.end(),
                 "an action is preferred that is none of the alert's");
    preferredAction_ = std::move(action);
    contentChanged();
}

std::shared_ptr<UIAlertAction> UIAlertController::actionOfReturn() const
{
    if (preferredAction_)
        return preferredAction_;
    for (auto style : {UIAlertActionStyle::default_, UIAlertActionStyle::cancel}) {
        auto found = std::ranges::find_if(
            actions_, [&](const auto& action) { return action->style() == style && action->isEnabled(); });
        if (found != actions_.end())
            return *found;
    }
    return nullptr;
}

std::shared_ptr<UIAlertAction> UIAlertController::actionOfEscape() const
{
    auto found = std::ranges::find(actions_, UIAlertActionStyle::cancel,
                                   [](const auto& action) { return action->style(); });
    if (found != actions_.end())
        return *found;
    return actions_.size() == 1 && preferredStyle_ == UIAlertControllerStyle::alert ? actions_.front()
                                                                                    : nullptr;
}

void UIAlertController::choose(const std::shared_ptr<UIAlertAction>& action)
{
    assertOnMainThread();
    if (!action || !action->isEnabled() || hasChosen_ || !presentingViewController())
        return;
    hasChosen_ = true;
    dismiss(Animated::yes, [action] {
        if (action->handler_)
            action->handler_(*action);
    });
}

void UIAlertController::loadView()
{
    card_ = std::make_shared<AlertView>(*this);
    setView(card_);
    contentChanged();
}

void UIAlertController::contentChanged()
{
    if (card_)
        card_->setContent(title(), message().value_or(""));
}

void UIAlertController::viewWillAppear(Animated animated)
{
    UIViewController::viewWillAppear(animated);
    hasChosen_ = false;
}

void UIAlertController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    card_->didAppear();
}

std::shared_ptr<UIPresentationController>
UIAlertController::makePresentationController(const std::shared_ptr<UIViewController>& presenting)
{
    return std::make_shared<AlertPresentationController>(
        std::static_pointer_cast<UIAlertController>(shared_from_this()), presenting);
}

} // namespace platform
