// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/AnimationTiming.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>

namespace platform {

// Stands between a controller that presents another over itself and the presented one, from the beginning of the
// presentation to its end. Puts the presented view in front of all of the window, moves it in and out, and keeps keys,
// focus and assistive technology inside of it meanwhile. Kept by who presents. Main thread only.
class UIPresentationController : public NSObject {
public:
    // The presented controller must not be null; the presenting one may be unknown yet.
    explicit UIPresentationController(std::shared_ptr<UIViewController> presented,
                                      std::weak_ptr<UIViewController> presenting = {});
    ~UIPresentationController() override;

    const std::shared_ptr<UIViewController>& presentedViewController() const { return presented_; }
    // Null once it is gone.
    std::shared_ptr<UIViewController> presentingViewController() const { return presenting_.lock(); }
    // What is shown of the presented controller: its view, loaded by this call.
    virtual std::shared_ptr<UIView> presentedView() const;
    // What holds the presented view while it is shown: all of the window. Null before and after.
    std::shared_ptr<UIView> containerView() const;

    // From here until `endPresentation`, or until this object goes, the presented controller and those inside it
    // answer UIViewController::presentationController() with this one. Presenting does so by itself.
    void beginPresentation();
    void endPresentation();

    // --- For kinds of presentation ------------------------------------------------------------------
    // Asked whenever the container is laid out. The default: all of it, or for sheets a card in its middle of the
    // controller's preferred size, as large as fits.
    virtual CGRect frameOfPresentedViewInContainerView() const;
    // Whether the presenter's view is out of the window while this one covers it. Default: for full screen.
    virtual bool shouldRemovePresentersView() const;
    // Whether what is behind is darkened. Default: for sheets.
    virtual bool dimsBackground() const;
    virtual void presentationTransitionWillBegin() { }
    virtual void presentationTransitionDidEnd() { }
    virtual void dismissalTransitionWillBegin() { }
    virtual void dismissalTransitionDidEnd() { }
    // The user pressed beside the presented view. Default: nothing.
    virtual void backgroundPressed() { }
    // Escape, which nobody inside took. True when it was used. Default: nothing.
    virtual bool escapePressed() { return false; }
    // Before the presented view gets its place.
    virtual void containerViewWillLayoutSubviews() { }
    // Whether the user may end it; asked each time. Empty: always.
    std::function<bool()> shouldDismiss;

protected:
    // How the presented view looks before it has come and after it has gone, and while it is there: transform and
    // alpha. Called inside of the animation. The default moves it in from below or fades it, as its transition style
    // says; it always fades where motion is reduced.
    enum class Stage { outside, shown };
    virtual void place(UIView& presentedView, Stage stage) const;
    virtual AnimationTiming transitionTiming(Stage towards) const;
    bool isMotionReduced() const;
    // The user wants it to end. False when it may not, or is not there.
    bool dismissByUser();
    // What darkens the rest. Null before and after.
    std::shared_ptr<UIView> dimmingView() const;

private:
    friend class UIViewController;
    enum class State { idle, presenting, presented, dismissing };
    class Container;
    using Completion = std::function<void()>;

    void present(UIWindow& window, Animated animated, Completion completion);
    void dismiss(Animated animated, Completion completion);
    // Ends it at once, whatever it was doing.
    void abandon();
    void move(Stage stage, Animated animated);
    void finishPresenting();
    void finishDismissing();
    void removePresenter();
    void restorePresenter();
    void settle(UIViewController& controller);
    void restoreLook();

    // fixed after construction
    std::shared_ptr<UIViewController> presented_;
    std::weak_ptr<UIViewController> presenting_;
    // main thread only
    State state_ = State::idle;
    unsigned transition_ =
        0; // counts them: an animation that is over asks whether it is still about this one
    std::shared_ptr<Container> container_;
    std::vector<Completion> completions_;
    // Of the presented controller's view, before this shaped it: it may be shown elsewhere afterwards.
    struct Look {
        CGFloat cornerRadius = 0;
        UIRectCorner maskedCorners;
        bool clips = false;
        UIViewAutoresizing autoresizing;
    };
    Look formerLook_;
    std::weak_ptr<UIView> presentersPlace_; // the superview that it was taken out of
    std::size_t presentersIndex_ = 0;
};

} // namespace platform
