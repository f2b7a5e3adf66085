// SPDX-License-Identifier: MIT
// How a view and what it holds come into a window and leave it.
#include "platform/uikit/UIView.h"

#include "platform/uikit/AccessibilityBridge.h"
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
            ViewAnimator::removeAll(*this);
    }
    for (const auto& subview : subviews_)
        subview->setWindow(window);
    if (mask_)
        mask_->setWindow(window);
}

void UIView::tellDidMoveToWindow(UIWindow* former, UIWindow* window)
{
    didMoveToWindow();
    auto subviews = subviews_;
    for (const auto& subview : subviews) {
        // One that was added or moved by a call before has been told already.
        if (subview->superview_ == this && subview->window_ == window && window_ == window)
            subview->tellDidMoveToWindow(former, window);
    }
    auto controller = viewController_.lock();
    if (!controller || window_ != window)
        return;
    if (window && window->isVisible())
        window->appearing_.push_back(controller);
    else if (former)
        controller->endAppearance();
}

} // namespace platform
