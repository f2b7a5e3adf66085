// SPDX-License-Identifier: MIT
// A window's life: made, shown, closed; its root controller, traits and title.
#include "platform/uikit/UIWindow.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIControllerWalk_p.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindowDispatch_p.h"
#include "platform/uikit/UIWindowScene.h"
#include "platform/uikit/WindowBackend.h"

#include <algorithm>

namespace platform {

UIWindow::UIWindow(CGRect frame)
    : UIView(frame)
    , dispatch_(std::make_unique<Dispatch>(*this))
{
    window_ = toldWindow_ = this;
    setBackgroundColor(UIColor::systemBackground());
}

UIWindow::~UIWindow()
{
    onClose = nullptr;
    close();
    // Views may outlive it; they find no window from here on.
    for (const auto& subview : std::vector(subviews())) {
        subview->leaveWindowFor(nullptr);
        subview->setWindow(nullptr);
        subview->tellDidMoveToWindow();
    }
    window_ = nullptr;
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller)
{
    assertOnMainThread();
    if (controller == rootViewController_)
        return;
    auto keptAlive = weak_from_this().lock();
    auto former = std::exchange(rootViewController_, std::move(controller));
    if (former) {
        if (auto view = former->viewIfLoaded(); view && view->superview().get() == this)
            view->removeFromSuperview();
    }
    if (isVisible_)
        installRootView();
    titleDidChange();
}

void UIWindow::installRootView()
{
    if (!rootViewController_)
        return;
    auto controller = rootViewController_;
    auto view = controller->view();
    if (controller != rootViewController_)
        return; // loading it has chosen another root
    view->setFrame(bounds());
    view->setAutoresizingMask({UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
    insertSubview(view, 0);
}

void UIWindow::setWindowScene(std::shared_ptr<UIWindowScene> scene)
{
    assertOnMainThread();
    if (scene == windowScene_)
        return;
    precondition(scene || !isVisible_, "a window that is shown was taken out of its scene");
    auto former = std::exchange(windowScene_, std::move(scene));
    if (!isVisible_)
        return;
    windowScene_->add(sharedFrom(this));
    former->remove(*this);
}

void UIWindow::makeKeyAndVisible()
{
    assertOnMainThread();
    precondition(!isClosed_, "a closed window was shown again");
    if (backend_) {
        backend_->raise();
        return;
    }
    precondition(!isVisible_, "a window that is shown off-screen was shown on the desktop");
    auto keptAlive = weak_from_this().lock();
    UIApplication::shared().start();
    backend_ = WindowBackend::make(*this);
    backend_->setMinimumSize(minimumSize_);
    show();
    // Anybody may have closed it on the way.
    if (backend_) {
        backend_->setTitle(shownTitle());
        UIApplication::shared().add(*this);
        backend_->open();
    }
}

void UIWindow::showOffscreen()
{
    assertOnMainThread();
    precondition(!isClosed_, "a closed window was shown again");
    if (isVisible_)
        return;
    auto keptAlive = weak_from_this().lock();
    show();
}

void UIWindow::show()
{
    isVisible_ = true;
    if (!windowScene_)
        windowScene_ = std::make_shared<UIWindowScene>();
    windowScene_->add(sharedFrom(this));
    layoutObserver_ = RunLoop::main().addBeforeSleepObserver(BeforeSleepPhase::layout, [this] {
        if (!wantsLayout() && appearing_.empty())
            return false;
        auto keptAlive = weak_from_this().lock();
        layoutNow();
        // What did not come to rest waits for the next turn, so that the rest goes on.
        return !wantsLayout();
    });
    inheritTraits();
    // Views that were put in before it could be seen.
    for (const auto& subview : std::vector(subviews())) {
        eachController(
            *subview,
            [](UIViewController& controller) {
                controller.beginAppearance(UIViewController::Direction::appear);
            },
            [this](const auto& controller) { appearing_.push_back(controller); });
    }
    addDirty({{}, bounds().size});
    if (isVisible_)
        installRootView();
    if (isVisible_)
        layoutNow();
}

void UIWindow::close()
{
    assertOnMainThread();
    if (std::exchange(isClosed_, true))
        return;
    auto keptAlive = weak_from_this().lock();
    dispatch_->arena.cancelAll();
    setHovered(nullptr);
    makeFirstResponder(nullptr);
    if (std::exchange(isVisible_, false)) {
        for (const auto& subview : std::vector(subviews())) {
            eachController(
                *subview,
                [](UIViewController& controller) {
                    controller.beginAppearance(UIViewController::Direction::disappear);
                },
                [](const auto& controller) { controller->endAppearance(); });
        }
    }
    layoutObserver_.cancel();
    if (auto scene = std::exchange(windowScene_, nullptr))
        scene->remove(*this);
    auto wasOnDesktop = backend_ != nullptr;
    if (wasOnDesktop)
        std::exchange(backend_, nullptr)->drop();
    if (auto handler = std::exchange(onClose, nullptr))
        handler();
    if (wasOnDesktop)
        UIApplication::shared().remove(*this);
}

bool UIWindow::isOnScreen() const
{
    return !isClosed_ && (!backend_ || backend_->isExposed());
}

bool UIWindow::isKeyWindow() const
{
    return isKey_;
}

void UIWindow::setKeyWindow(bool isKey)
{
    assertOnMainThread();
    if (isKey == isKey_)
        return;
    isKey_ = isKey;
    if (auto responder = firstResponder())
        responder->keyWindowDidChange();
}

void UIWindow::setTitle(std::string title)
{
    assertOnMainThread();
    title_ = std::move(title);
    titleDidChange();
}

std::string UIWindow::shownTitle() const
{
    return title_.empty() && rootViewController_ ? rootViewController_->title() : title_;
}

void UIWindow::titleDidChange()
{
    if (backend_)
        backend_->setTitle(shownTitle());
}

void UIWindow::setMinimumSize(CGSize size)
{
    assertOnMainThread();
    minimumSize_ = size;
    if (backend_)
        backend_->setMinimumSize(size);
}

CGRect UIWindow::availableScreenBounds()
{
    return WindowBackend::availableScreenBounds();
}

void UIWindow::setFrameSize(CGSize size)
{
    assertOnMainThread();
    if (size == bounds().size)
        return;
    setFrame({frame().origin, size});
    addDirty({{}, bounds().size});
}

void UIWindow::setBaseSafeAreaInsets(UIEdgeInsets insets)
{
    assertOnMainThread();
    baseSafeAreaInsets_ = insets;
    updateSafeArea();
}

void UIWindow::setBaseTraits(const UITraitCollection& traits)
{
    assertOnMainThread();
    baseTraits_ = traits;
    inheritTraits();
}

UITraitCollection UIWindow::baseTraits() const
{
    if (!backend_)
        return baseTraits_.value_or(UITraitCollection{});
    auto traits = baseTraits_ ? *baseTraits_ : UIApplication::shared().desktopTraits();
    traits.displayScale = backend_->scale();
    return traits;
}

void UIWindow::surroundingsDidChange()
{
    auto keptAlive = weak_from_this().lock();
    inheritTraits();
}

} // namespace platform
