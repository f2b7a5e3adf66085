// SPDX-License-Identifier: MIT
#include "platform/swiftui/ModalPresenter.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISheetPresentationController.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

// A presentation that says when it has gone, however that came.
template <class Presentation>
class ModalPresenter::Notifying final : public Presentation {
public:
    using Presentation::Presentation;
    std::function<void()> onGone;

    void dismissalTransitionDidEnd() override
    {
        Presentation::dismissalTransitionDidEnd();
        if (auto action = std::exchange(onGone, nullptr))
            action();
    }
    bool escapePressed() override
    {
        this->dismissByUser();
        return true; // nobody behind gets it
    }
};

// The presented controller.
class ModalPresenter::Controller final : public ContentController {
public:
    Controller(PresentationKind kind, AnyView content, std::shared_ptr<EnvironmentScope> surroundings)
        : ContentController(std::move(content), std::move(surroundings))
        , kind_(kind)
        , guard_(std::make_shared<DismissalGuard>())
    {
        contentEnvironment().set<DismissalGuardKey>(guard_);
        setModalPresentationStyle(kind == PresentationKind::sheet ? UIModalPresentationStyle::pageSheet
                                      : kind == PresentationKind::popover
                                      ? UIModalPresentationStyle::popover
                                      : UIModalPresentationStyle::fullScreen);
    }

    std::function<void()> onGone;

    void setAnchor(const PopoverAnchor& anchor)
    {
        anchor_ = anchor;
        if (auto popover = popover_.lock())
            point(*popover);
    }
    void viewDidLoad() override
    {
        ContentController::viewDidLoad();
        // A popover has the colour of its bubble; a card is told from what is behind it in the dark too.
        if (kind_ == PresentationKind::sheet)
            view()->setBackgroundColor(UIColor::dynamic(UIColor::gray(1), UIColor::gray(0.11)));
        else if (kind_ == PresentationKind::fullScreenCover)
            view()->setBackgroundColor(UIColor::systemBackground());
    }
    // The bubble follows what the content wants.
    void viewDidLayoutSubviews() override
    {
        ContentController::viewDidLayoutSubviews();
        auto popover = popover_.lock();
        auto container = popover ? popover->containerView() : nullptr;
        if (!container)
            return;
        auto wanted = sizeThatFits(container->bounds().size);
        if (wanted == std::exchange(wanted_, wanted))
            return;
        container->setNeedsLayout();
    }

protected:
    std::shared_ptr<UIPresentationController>
    makePresentationController(const std::shared_ptr<UIViewController>& presenting) override
    {
        switch (kind_) {
        case PresentationKind::sheet:
            return make<UISheetPresentationController>(presenting);
        case PresentationKind::popover: {
            auto popover = make<UIPopoverPresentationController>(presenting);
            popover_ = popover;
            point(*popover);
            return popover;
        }
        case PresentationKind::fullScreenCover:
            break;
        }
        return make<UIPresentationController>(presenting);
    }

private:
    template <class Presentation>
    std::shared_ptr<Presentation> make(const std::shared_ptr<UIViewController>& presenting)
    {
        auto presentation = std::make_shared<Notifying<Presentation>>(
            std::static_pointer_cast<UIViewController>(shared_from_this()), presenting);
        presentation->onGone = std::exchange(onGone, nullptr);
        presentation->shouldDismiss = [guard = guard_] { return guard->forbidding == 0; };
        return presentation;
    }
    void point(UIPopoverPresentationController& popover) const
    {
        popover.setSourceView(anchor_.view.lock());
        popover.setSourceRect(anchor_.rect);
    }

    const PresentationKind kind_;
    const std::shared_ptr<DismissalGuard> guard_;
    PopoverAnchor anchor_;
    std::weak_ptr<UIPopoverPresentationController> popover_;
    CGSize wanted_;
};

ModalPresenter::ModalPresenter(const std::shared_ptr<UIViewController>& host, PresentationKind kind)
    : host_(host)
    , kind_(kind)
{
}

void ModalPresenter::want(Wish wish)
{
    wish_ = std::move(wish);
    auto shown = shown_.lock();
    if (shown && wish_->identity == shownIdentity_) {
        onDismiss_ = wish_->onDismiss;
        if (!isClosing_)
            shown->setContent(wish_->make());
    }
    followLater();
}

void ModalPresenter::wantNothing()
{
    wish_.reset();
    followLater();
}

void ModalPresenter::setAnchor(PopoverAnchor anchor)
{
    anchor_ = std::move(anchor);
    if (auto shown = shown_.lock())
        shown->setAnchor(anchor_);
}

// Not in the middle of an update or a layout, which presenting would change.
void ModalPresenter::followLater()
{
    if (isFollowing_ || (!wish_ && shown_.expired()))
        return;
    isFollowing_ = true;
    RunLoop::main().perform([self = shared_from_this()] {
        self->isFollowing_ = false;
        self->follow();
    });
}

void ModalPresenter::follow()
{
    if (auto shown = shown_.lock()) {
        if (!isClosing_ && (!wish_ || wish_->identity != shownIdentity_)) {
            isClosing_ = true;
            if (auto presenting = shown->presentingViewController())
                presenting->dismiss(Animated::yes);
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

void ModalPresenter::present()
{
    auto host = host_.lock();
    if (!wish_ || !host || !host->isViewLoaded() || !host->view()->window())
        return;
    auto controller = std::make_shared<Controller>(kind_, wish_->make(), wish_->surroundings);
    // Kept by the presentation: what is wanted is told even when the place has gone meanwhile.
    controller->onGone = [self = shared_from_this(), identity = wish_->identity] { self->didGo(identity); };
    controller->setAnchor(anchor_);
    shown_ = controller;
    shownIdentity_ = wish_->identity;
    onDismiss_ = wish_->onDismiss;
    isClosing_ = false;
    host->present(controller, Animated::yes);
}

void ModalPresenter::didGo(std::uint64_t identity)
{
    auto onDismiss = std::exchange(onDismiss_, nullptr);
    auto wasAskedTo = std::exchange(isClosing_, false);
    shown_.reset();
    if (wish_ && wish_->identity == identity && !wasAskedTo) {
        auto onClosed = std::move(wish_->onClosed);
        wish_.reset();
        onClosed();
    }
    if (onDismiss)
        onDismiss();
    followLater();
}

} // namespace platform
