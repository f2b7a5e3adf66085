// SPDX-License-Identifier: MIT
// How a view and what it holds come into a window and leave it.
#include "platform/uikit/UIView.h"

#include "platform/uikit/AccessibilityBridge.h"
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/ViewAnimator.h"

namespace platform {

void UIView::leaveWindowFor(UIWindow* window)
{
    if (window_ == window)
        return;
    if (window_)
        window_->viewWillLeave(*this);
    tellWillMoveToWindow(window);
}

void UIView::tellWillMoveToWindow(UIWindow* window)
{
    if (auto controller = viewController_.lock()) {
        if (window && window->isVisible())
            controller->beginAppearance(UIViewController::Direction::appear);
        else if (window_)
            controller->beginAppearance(UIViewController::Direction::disappear);
    }
    willMoveToWindow(window);
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        if (subview->superview_ == this)
            subview->tellWillMoveToWindow(window);
    }
}

void UIView::setWindow(UIWindow* window)
{
    if (window_ == window)
        return;
    window_ = window;
    if (!window) {
        AccessibilityBridge::forget(*this);
        if (animations_)
            ViewAnimator::viewLeftWindow(*this);
    }
    if (auto* gradient = dynamic_cast<GradientMask*>(this))
        gradient->maskedPicture().contentDidChange(); // in no window, and in one that is new, it is not told
    for (const auto& subview : subviews_)
        subview->setWindow(window);
    if (mask_)
        mask_->setWindow(window);
}

// Each view hears of each window once, and of leaving it once, whatever happened between the will-call and this.
void UIView::tellDidMoveToWindow()
{
    auto keptAlive = weak_from_this().lock();
    if (toldWindow_ != window_) {
        toldWindow_ = window_;
        didMoveToWindow();
    }
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        if (subview->superview_ == this)
            subview->tellDidMoveToWindow();
    }
    auto controller = viewController_.lock();
    if (!controller)
        return;
    if (window_ && window_->isVisible()) {
        window_->appearing_.push_back(controller);
    } else {
        controller->beginAppearance(UIViewController::Direction::disappear); // of a window closed meanwhile
        controller->endAppearance();
        if (!window_)
            controller->viewDidLeaveWindow();
    }
}

} // namespace platform
