// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPresentationController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/PresentationQueue.h"
#include "platform/uikit/UIControllerWalk_p.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIViewControllerAncestry_p.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat sheetMargin = 20;
constexpr CGSize sheetSize{540, 620}; // of a sheet without a wish
constexpr CGFloat sheetCornerRadius = 12;
constexpr double moveTime = 0.35, fadeTime = 0.2; // seconds

UIColor dimmingColor()
{
    return UIColor::dynamic(UIColor::gray(0, 0.2), UIColor::gray(0, 0.48), UIColor::gray(0, 0.4),
                            UIColor::gray(0, 0.65));
}

bool isSheetStyle(const UIViewController& controller)
{
    auto style = controller.modalPresentationStyle();
    return style == UIModalPresentationStyle::automatic || style == UIModalPresentationStyle::pageSheet
        || style == UIModalPresentationStyle::formSheet;
}

} // namespace

// All of the window while something is presented: what is behind gets no touch and no wheel.
class UIPresentationController::Container : public UIView {
public:
    explicit Container(std::weak_ptr<UIPresentationController> presentation)
        : dimming(std::make_shared<UIView>())
        , presentation_(std::move(presentation))
    {
        dimming->setBackgroundColor(dimmingColor());
        dimming->setUserInteractionEnabled(false);
        addSubview(dimming);
    }

    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        dimming->setFrame(bounds());
        auto presentation = presentation_.lock();
        if (!presentation || presentation->state_ == State::idle)
            return;
        presentation->containerViewWillLayoutSubviews();
        // Not the frame: the view may be on its way, under a transform.
        auto frame = presentation->frameOfPresentedViewInContainerView();
        auto view = presentation->presentedView();
        view->setBounds({view->bounds().origin, frame.size});
        view->setCenter(frame.center());
    }
    void safeAreaInsetsDidChange() override { setNeedsLayout(); }
    void touchesBegan(UITouch&) override { }
    void touchesMoved(UITouch&) override { }
    void touchesEnded(UITouch& touch) override
    {
        auto presentation = presentation_.lock();
        if (presentation && touch.view.lock().get() == this && touch.button == UIPointerButton::primary
            && bounds().contains(touch.location(*this)))
            presentation->backgroundPressed();
    }
    void touchesCancelled(UITouch&) override { }
    bool scrollWheel(const UIScrollWheel&) override { return true; }
    // Of what is presented, something inside may want to end first.
    bool pressesBegan(const UIPress& press) override
    {
        auto presentation = presentation_.lock();
        if (!presentation || press.key != UIKeyCode::escape || press.modifiers.rawValue != 0)
            return UIView::pressesBegan(press);
        if (press.isRepeat)
            return true; // held down it is still about what was there before
        return UIWindow::offerShortcut(*presentation->presentedView(), press) || presentation->escapePressed()
            || UIView::pressesBegan(press);
    }

    const std::shared_ptr<UIView> dimming;
    bool madeDialog = false;          // the presented view was made one for the time being
    std::optional<std::string> named; // and was given this name

private:
    const std::weak_ptr<UIPresentationController> presentation_;
};

UIPresentationController::UIPresentationController(std::shared_ptr<UIViewController> presented,
                                                   std::weak_ptr<UIViewController> presenting)
    : presented_(std::move(presented))
    , presenting_(std::move(presenting))
{
    precondition(presented_ != nullptr, "a presentation presents a controller");
}

UIPresentationController::~UIPresentationController() = default;

std::shared_ptr<UIView> UIPresentationController::presentedView() const
{
    return presented_->view();
}

std::shared_ptr<UIView> UIPresentationController::containerView() const
{
    return container_;
}

std::shared_ptr<UIView> UIPresentationController::dimmingView() const
{
    return container_ ? container_->dimming : nullptr;
}

bool UIPresentationController::dismissByUser()
{
    auto self = weak_from_this().lock();
    if (state_ != State::presenting && state_ != State::presented)
        return false;
    if (shouldDismiss && !shouldDismiss())
        return false;
    dismiss(Animated::yes, {});
    return true;
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

CGRect UIPresentationController::frameOfPresentedViewInContainerView() const
{
    auto all = container_ ? container_->bounds() : CGRect{};
    if (!isSheetStyle(*presented_))
        return all;
    auto room = all.inset(container_->safeAreaInsets()).insetBy(sheetMargin, sheetMargin);
    if (room.isNull())
        return all;
    auto wish = presented_->preferredContentSize();
    auto size = wish == CGSize{} ? sheetSize : wish;
    size = {std::min(size.width, room.width()), std::min(size.height, room.height())};
    return CGRect::make(room.midX() - size.width / 2, room.midY() - size.height / 2, size.width, size.height);
}

bool UIPresentationController::shouldRemovePresentersView() const
{
    return presented_->modalPresentationStyle() == UIModalPresentationStyle::fullScreen;
}

bool UIPresentationController::dimsBackground() const
{
    return isSheetStyle(*presented_);
}

bool UIPresentationController::isMotionReduced() const
{
    return container_ && container_->traitCollection().prefersReducedMotion;
}

void UIPresentationController::place(UIView& view, Stage stage) const
{
    auto fades =
        isMotionReduced() || presented_->modalTransitionStyle() == UIModalTransitionStyle::crossDissolve;
    auto isOutside = stage == Stage::outside;
    view.setAlpha(isOutside && fades ? 0 : 1);
    auto way = container_ ? container_->bounds().height() : 0;
    view.setTransform(isOutside && !fades ? CGAffineTransform::translation(0, way) : CGAffineTransform{});
}

AnimationTiming UIPresentationController::transitionTiming(Stage) const
{
    auto fades =
        isMotionReduced() || presented_->modalTransitionStyle() == UIModalTransitionStyle::crossDissolve;
    return AnimationTiming::easeOut(fades ? fadeTime : moveTime);
}

void UIPresentationController::present(UIWindow& window, Animated animated, Completion completion)
{
    using Direction = UIViewController::Direction;
    auto self = weak_from_this().lock();
    auto window_ = std::static_pointer_cast<UIWindow>(window.weak_from_this().lock());
    state_ = State::presenting;
    completions_.push_back(std::move(completion));
    beginPresentation();
    auto content = presented_->view();
    formerLook_ = {content->cornerRadius(), content->maskedCorners(), content->clipsToBounds(),
                   content->autoresizingMask()};
    auto view = presentedView();
    container_ = std::make_shared<Container>(sharedFrom(this));
    container_->setFrame(window.bounds());
    container_->setAutoresizingMask({UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
    container_->dimming->setHidden(!dimsBackground());
    if (auto& properties = view->accessibility(); properties.role == AccessibilityRole::none) {
        properties.role = AccessibilityRole::dialog;
        properties.isModal = true;
        container_->madeDialog = true;
        if (properties.label.empty()) {
            properties.label = presented_->title();
            container_->named = properties.label;
        }
    }
    presented_->holdsAppearance_ = true;

    presentationTransitionWillBegin();
    auto begin = [animated](UIView& tree, Direction direction) {
        eachController(
            tree, [&](UIViewController& controller) { controller.beginAppearance(direction, animated); },
            [](const auto&) {});
    };
    auto presenter = presenting_.lock();
    if (window.isVisible()) {
        if (presenter && shouldRemovePresentersView() && presenter->isViewLoaded())
            begin(*presenter->view(), Direction::disappear);
        begin(*view, Direction::appear);
    }
    // Who heard of it may have ended it, or closed the window.
    if (state_ != State::presenting)
        return;
    UIView::performWithoutAnimation([&] {
        container_->addSubview(view);
        window_->addSubview(container_);
        if (state_ != State::presenting)
            return;
        container_->layoutIfNeeded();
        if (isSheetStyle(*presented_) && view->cornerRadius() == 0
            && view->bounds().size != container_->bounds().size) {
            view->setCornerRadius(sheetCornerRadius);
            view->setClipsToBounds(true);
        }
        container_->dimming->setAlpha(0);
        place(*view, Stage::outside);
    });
    if (state_ != State::presenting)
        return;
    window_->beginModal(view);
    if (state_ == State::presenting)
        move(Stage::shown, animated);
}

// What is on its way already goes on from where it is.
void UIPresentationController::move(Stage stage, Animated animated)
{
    auto number = ++transition_;
    auto finish = [weak = std::weak_ptr(sharedFrom(this)), number, stage] {
        auto self = weak.lock();
        if (!self || self->transition_ != number)
            return;
        if (stage == Stage::shown)
            self->finishPresenting();
        else
            self->finishDismissing();
    };
    auto change = [&] {
        place(*presentedView(), stage);
        container_->dimming->setAlpha(stage == Stage::shown ? 1 : 0);
    };
    if (animated == Animated::yes && container_->window()) {
        UIView::animate(transitionTiming(stage), change, [finish](bool) { finish(); });
        return;
    }
    UIView::performWithoutAnimation(change);
    // Appearance ends after the first layout, as everywhere.
    if (stage == Stage::shown)
        RunLoop::main().perform(finish);
    else
        finish();
}

// Appearance of what a transition has held back.
void UIPresentationController::settle(UIViewController& controller)
{
    controller.holdsAppearance_ = false;
    auto view = controller.viewIfLoaded();
    auto window = view ? view->window() : nullptr;
    if (!window || !window->isVisible())
        return;
    eachController(*view, [](UIViewController&) {}, [](const auto& inside) { inside->endAppearance(); });
}

void UIPresentationController::finishPresenting()
{
    auto self = weak_from_this().lock();
    state_ = State::presented;
    settle(*presented_);
    if (state_ == State::presented && shouldRemovePresentersView())
        removePresenter();
    if (state_ != State::presented)
        return;
    presentationTransitionDidEnd();
    for (const auto& completion : std::exchange(completions_, {})) {
        if (completion)
            completion();
    }
}

void UIPresentationController::removePresenter()
{
    auto presenter = presenting_.lock();
    auto view = presenter ? presenter->viewIfLoaded() : nullptr;
    auto place = view ? view->superview() : nullptr;
    if (!place)
        return;
    presentersPlace_ = place;
    auto index = std::ranges::find(place->subviews(), view) - place->subviews().begin();
    presentersIndex_ = static_cast<std::size_t>(index);
    view->removeFromSuperview();
}

void UIPresentationController::restorePresenter()
{
    auto place = std::exchange(presentersPlace_, {}).lock();
    auto presenter = presenting_.lock();
    if (!place || !presenter || presenter->view()->superview())
        return;
    // A window may have another root meanwhile.
    if (auto* window = dynamic_cast<UIWindow*>(place.get());
        window && window->rootViewController() != presenter)
        return;
    presenter->view()->setFrame(place->bounds());
    place->insertSubview(presenter->view(), presentersIndex_);
}

void UIPresentationController::dismiss(Animated animated, Completion completion)
{
    using Direction = UIViewController::Direction;
    auto self = sharedFrom(this);
    // What is in front goes first, and only that is seen to go.
    if (auto above = presented_->presentation_) {
        if (container_)
            container_->setHidden(true);
        above->dismiss(animated, [self, completion = std::move(completion)]() mutable {
            if (self->state_ == State::idle) {
                if (completion)
                    completion();
                return;
            }
            self->dismiss(Animated::no, std::move(completion));
        });
        return;
    }
    completions_.push_back(std::move(completion));
    if (state_ == State::dismissing)
        return;
    state_ = State::dismissing;
    dismissalTransitionWillBegin();
    auto view = presentedView();
    auto window = container_->window();
    eachController(
        *view,
        [&](UIViewController& controller) { controller.beginAppearance(Direction::disappear, animated); },
        [](const auto&) {});
    auto presenter = presenting_.lock();
    if (presenter && presenter->isViewLoaded() && !presentersPlace_.expired()) {
        presenter->holdsAppearance_ = true;
        if (window && window->isVisible())
            presenter->beginAppearance(Direction::appear, animated);
        restorePresenter();
    }
    if (state_ != State::dismissing)
        return;
    // Keys, touches and readers are for what is behind from here on.
    container_->setUserInteractionEnabled(false);
    container_->accessibility().isHidden = true;
    if (window)
        window->endModal(*view);
    if (state_ == State::dismissing)
        move(Stage::outside, animated);
}

void UIPresentationController::restoreLook()
{
    auto content = presented_->view();
    content->setCornerRadius(formerLook_.cornerRadius);
    content->setMaskedCorners(formerLook_.maskedCorners);
    content->setClipsToBounds(formerLook_.clips);
    content->setAutoresizingMask(formerLook_.autoresizing);
}

void UIPresentationController::abandon()
{
    if (state_ == State::idle)
        return;
    finishDismissing();
}

void UIPresentationController::finishDismissing()
{
    auto self = weak_from_this().lock();
    ++transition_;
    state_ = State::idle;
    presented_->holdsAppearance_ = false;
    auto presenter = presenting_.lock();
    if (presenter) {
        restorePresenter();
        settle(*presenter);
    }
    auto view = presentedView();
    auto container = std::exchange(container_, nullptr);
    container->removeFromSuperview();
    if (container->madeDialog) {
        auto& properties = view->accessibility();
        properties.role = AccessibilityRole::none;
        properties.isModal = false;
        if (properties.label == container->named)
            properties.label.clear();
    }
    UIView::performWithoutAnimation([&] {
        view->removeFromSuperview();
        place(*view, Stage::shown);
        restoreLook();
    });
    endPresentation();
    if (presenter && presenter->presentation_.get() == this)
        presenter->presentation_.reset();
    dismissalTransitionDidEnd();
    for (const auto& completion : std::exchange(completions_, {})) {
        if (completion)
            completion();
    }
    if (presenter)
        PresentationQueue::run(*presenter);
}

} // namespace platform
