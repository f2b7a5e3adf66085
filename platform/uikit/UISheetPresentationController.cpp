// SPDX-License-Identifier: MIT
#include "platform/uikit/UISheetPresentationController.h"

#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat cornerRadius = 12;
constexpr CGFloat topGap = 10;            // points above a sheet that fills the width
constexpr CGFloat handleHeight = 32;      // of the upper part that the mouse can take
constexpr CGFloat resistance = 0.2;       // of the way that a sheet follows which may not go there
constexpr double flingSpeed = 500;        // points a second, downwards
constexpr double dismissingFraction = .4; // of its height

} // namespace

UISheetPresentationController::UISheetPresentationController(std::shared_ptr<UIViewController> presented,
                                                             std::weak_ptr<UIViewController> presenting)
    : UIPresentationController(std::move(presented), std::move(presenting))
{
}

UISheetPresentationController::~UISheetPresentationController() = default;

bool UISheetPresentationController::fillsWidth() const
{
    auto container = containerView();
    return container && container->bounds().width() < minimumCardWidth;
}

CGRect UISheetPresentationController::frameOfPresentedViewInContainerView() const
{
    auto container = containerView();
    if (!container || !fillsWidth())
        return UIPresentationController::frameOfPresentedViewInContainerView();
    auto all = container->bounds();
    auto safe = container->safeAreaInsets();
    auto highest = std::max(all.height() - safe.top - topGap, 0.0);
    auto wish = presentedViewController()->preferredContentSize().height;
    auto height = wish > 0 ? std::min(wish + safe.bottom, highest) : highest;
    return CGRect::make(all.minX(), all.maxY() - height, all.width(), height);
}

void UISheetPresentationController::containerViewWillLayoutSubviews()
{
    auto view = presentedView();
    view->setCornerRadius(cornerRadius);
    view->setClipsToBounds(true);
    view->setMaskedCorners(fillsWidth() ? UIRectCorner::topLeft | UIRectCorner::topRight
                                        : UIRectCorner::allCorners);
}

std::shared_ptr<UIPanGestureRecognizer> UISheetPresentationController::makePan(bool isForFingers)
{
    // The presented view lets go of it before this is gone.
    auto pan = std::make_shared<UIPanGestureRecognizer>(
        [this](UIGestureRecognizer& each) { handlePan(static_cast<UIPanGestureRecognizer&>(each)); });
    pan->shouldReceive = [this, isForFingers](UIGestureRecognizer&, UITouch& touch) {
        if (isForFingers)
            return touch.type == UITouchType::finger;
        return touch.type != UITouchType::finger && touch.location(*presentedView()).y < handleHeight;
    };
    pan->shouldBegin = [this](UIGestureRecognizer& each) {
        auto container = containerView();
        if (!container)
            return false;
        auto way = static_cast<UIPanGestureRecognizer&>(each).translation(*container);
        return way.y > std::abs(way.x);
    };
    presentedView()->addGestureRecognizer(pan);
    return pan;
}

void UISheetPresentationController::presentationTransitionWillBegin()
{
    fingerPan_ = makePan(true);
    mousePan_ = makePan(false);
}

void UISheetPresentationController::dismissalTransitionDidEnd()
{
    for (auto* pan : {&fingerPan_, &mousePan_}) {
        if (auto each = std::exchange(*pan, nullptr))
            presentedView()->removeGestureRecognizer(*each);
    }
}

bool UISheetPresentationController::escapePressed()
{
    dismissByUser();
    return true; // nobody behind gets it
}

void UISheetPresentationController::drawDown(CGFloat way)
{
    auto view = presentedView();
    auto isHeld = shouldDismiss && !shouldDismiss();
    // Upwards there is nothing to see beneath it.
    auto shown = std::max(isHeld ? way * resistance : way, 0.0);
    auto height = std::max(view->bounds().height(), 1.0);
    UIView::performWithoutAnimation([&] {
        view->setTransform(CGAffineTransform::translation(0, shown));
        if (auto dimming = dimmingView())
            dimming->setAlpha(std::clamp(1 - shown / height, 0.0, 1.0));
    });
}

void UISheetPresentationController::handlePan(UIPanGestureRecognizer& pan)
{
    auto self = weak_from_this().lock();
    auto container = containerView();
    if (!container || presentedViewController()->isBeingDismissed())
        return;
    auto view = presentedView();
    auto state = pan.state();
    if (state == UIGestureRecognizerState::began)
        dragStart_ = view->presentationTransform().ty; // it may be on its way
    if (state != UIGestureRecognizerState::cancelled)
        drawDown(dragStart_ + pan.translation(*container).y);
    if (state != UIGestureRecognizerState::ended && state != UIGestureRecognizerState::cancelled)
        return;
    auto speed = pan.velocity(*container).y;
    auto isFar = view->transform().ty > view->bounds().height() * dismissingFraction;
    auto goes =
        state == UIGestureRecognizerState::ended && speed > -flingSpeed && (speed > flingSpeed || isFar);
    if (!goes || !dismissByUser())
        settleBack();
}

void UISheetPresentationController::settleBack()
{
    UIView::animate(transitionTiming(Stage::shown), [this] {
        presentedView()->setTransform({});
        if (auto dimming = dimmingView())
            dimming->setAlpha(1);
    });
}

} // namespace platform
