// SPDX-License-Identifier: MIT
#include "platform/swiftui/AlertPresenter.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

// Says when it has gone, however that came.
class AlertPresenter::Controller : public UIAlertController {
public:
    Controller(const AlertContent& alert, std::function<void()> onGone)
        : UIAlertController(
              alert.title.empty() && alert.isActionSheet ? std::nullopt : std::optional(alert.title),
              alert.message,
              alert.isActionSheet ? UIAlertControllerStyle::actionSheet : UIAlertControllerStyle::alert)
        , onGone_(std::move(onGone))
    {
    }
    void viewDidDisappear(Animated animated) override
    {
        UIAlertController::viewDidDisappear(animated);
        if (auto onGone = std::exchange(onGone_, nullptr))
            onGone();
    }

private:
    std::function<void()> onGone_;
};

namespace {

UIAlertActionStyle styleOf(Alert::Button::Kind kind)
{
    switch (kind) {
    case Alert::Button::Kind::cancel:
        return UIAlertActionStyle::cancel;
    case Alert::Button::Kind::destructive:
        return UIAlertActionStyle::destructive;
    case Alert::Button::Kind::default_:
        break;
    }
    return UIAlertActionStyle::default_;
}

void addButton(UIAlertController& alert, const Alert::Button& button)
{
    // Of two that cancel the second is an ordinary one: an alert has only one.
    auto style = styleOf(button.kind());
    for (const auto& action : alert.actions()) {
        if (style == UIAlertActionStyle::cancel && action->style() == style)
            style = UIAlertActionStyle::default_;
    }
    alert.addAction(
        std::make_shared<UIAlertAction>(button.label(), style, [action = button.action()](UIAlertAction&) {
            if (action)
                action();
        }));
}

} // namespace

AlertPresenter::AlertPresenter(const std::shared_ptr<UIViewController>& controller)
    : host_(controller)
{
}

void AlertPresenter::want(std::uint64_t identity, std::function<AlertContent()> make,
                          std::function<void()> clear)
{
    wish_ = Wish{identity, std::move(make), std::move(clear)};
    followLater();
}

void AlertPresenter::wantNothing()
{
    wish_.reset();
    followLater();
}

// Not in the middle of an update or a layout, which presenting would change.
void AlertPresenter::followLater()
{
    if (std::exchange(isFollowing_, true))
        return;
    RunLoop::main().perform([self = shared_from_this()] {
        self->isFollowing_ = false;
        self->follow();
    });
}

void AlertPresenter::follow()
{
    if (auto alert = shown_.lock()) {
        if (!isClosing_ && (!wish_ || wish_->identity != shownIdentity_)) {
            isClosing_ = true;
            alert->dismiss(Animated::yes);
        }
        return; // the rest when it has gone
    }
    auto host = host_.lock();
    if (!wish_ || !host || isWaiting_)
        return;
    isWaiting_ = true;
    PresentationQueue::perform(*host, [weak = weak_from_this()] {
        if (auto self = weak.lock()) {
            self->isWaiting_ = false;
            self->present();
        }
    });
}

void AlertPresenter::present()
{
    auto host = host_.lock();
    if (!wish_ || !host || !host->isViewLoaded() || !host->view()->window())
        return;
    auto alert = wish_->make();
    auto identity = wish_->identity;
    auto controller = std::make_shared<Controller>(alert, [weak = weak_from_this(), identity] {
        if (auto self = weak.lock())
            self->alertDidGo(identity);
    });
    for (const auto& button : alert.buttons)
        addButton(*controller, button);
    shown_ = controller;
    shownIdentity_ = identity;
    isClosing_ = false;
    host->present(controller, Animated::yes);
}

// Before the chosen button's action is called: what that wants comes after what has been.
void AlertPresenter::alertDidGo(std::uint64_t identity)
{
    auto wasAskedTo = std::exchange(isClosing_, false);
    shown_.reset();
    if (wish_ && wish_->identity == identity && !wasAskedTo) {
        auto clear = std::move(wish_->clear);
        wish_.reset();
        clear();
    }
    followLater();
}

} // namespace platform
