// SPDX-License-Identifier: MIT
#include "platform/uikit/AlertPresentationController.h"

#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat margin = 16, sheetMargin = 8; // between the card and the window's edges
constexpr double arrivalScale = 1.1;
constexpr double arrivalTime = 0.25, departureTime = 0.15, slideTime = 0.35; // seconds

// On whole points: texts and hairlines stay sharp.
CGRect placed(CGFloat x, CGFloat y, CGSize size)
{
    return CGRect::make(std::round(x), std::round(y), size.width, size.height);
}

} // namespace

AlertPresentationController::AlertPresentationController(const std::shared_ptr<UIAlertController>& alert,
                                                         std::weak_ptr<UIViewController> presenting)
    : UIPresentationController(alert, std::move(presenting))
{
}

UIAlertController& AlertPresentationController::alert() const
{
    return static_cast<UIAlertController&>(*presentedViewController()); // as the constructor was given it
}

bool AlertPresentationController::isSheet() const
{
    return alert().preferredStyle() == UIAlertControllerStyle::actionSheet;
}

CGRect AlertPresentationController::frameOfPresentedViewInContainerView() const
{
    auto container = containerView();
    auto all = container->bounds();
    auto inset = isSheet() ? sheetMargin : margin;
    auto room = all.inset(container->safeAreaInsets()).insetBy(inset, inset);
    if (room.isEmpty())
        room = all;
    auto size = presentedView()->sizeThatFits(room.size);
    auto x = room.midX() - size.width / 2;
    return isSheet() ? placed(x, room.maxY() - size.height, size)
                     : placed(x, room.midY() - size.height / 2, size);
}

void AlertPresentationController::backgroundPressed()
{
    if (isSheet())
        alert().choose(alert().actionOfEscape());
}

void AlertPresentationController::place(UIView& card, Stage stage) const
{
    auto isOutside = stage == Stage::outside;
    auto moves = !isMotionReduced();
    card.setAlpha(isOutside && !(isSheet() && moves) ? 0 : 1);
    CGAffineTransform transform;
    if (isOutside && moves && isSheet()) {
        auto container = containerView();
        transform = CGAffineTransform::translation(
            0, card.bounds().height() + sheetMargin + (container ? container->safeAreaInsets().bottom : 0));
    } else if (isOutside && moves && !alert().isBeingDismissed()) {
        transform = CGAffineTransform::scale(arrivalScale, arrivalScale);
    }
    card.setTransform(transform);
}

AnimationTiming AlertPresentationController::transitionTiming(Stage towards) const
{
    if (isSheet() && !isMotionReduced())
        return AnimationTiming::easeOut(slideTime);
    return AnimationTiming::easeOut(towards == Stage::shown ? arrivalTime : departureTime);
}

} // namespace platform
