// SPDX-License-Identifier: MIT
#include "platform/uikit/ScrollIndicatorView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr CGFloat thinBar = 3, wideBar = 8;                // points across
constexpr CGFloat edgeGap = 2;                             // between the bar and the edge
constexpr CGFloat shortestBar = 24;                        // that a pointer can still take
constexpr Duration firstRepeat = 400ms, nextRepeat = 80ms; // of paging while the button is down
constexpr double fadeTime = 0.25;                          // seconds

// Above whatever the content has.
constexpr CGFloat inFront = 1e6;

double alphaOfBar(bool isPressed, bool isWide, bool highContrast)
{
    return (isPressed ? 0.65 : isWide ? 0.5 : 0.35) + (highContrast ? 0.25 : 0);
}

} // namespace

ScrollIndicatorView::ScrollIndicatorView(UIScrollView& scrollView, UILayoutAxis axis)
    : scrollView_(std::static_pointer_cast<UIView>(scrollView.weak_from_this().lock()))
    , owner_(&scrollView)
    , axis_(axis)
{
    setAlpha(0);
    setZPosition(inFront);
    accessibility().isHidden = true; // assistive technology scrolls by itself
}

void ScrollIndicatorView::place(CGRect area, CGFloat endGap, ScrollIndicatorState state)
{
    auto isRightToLeft =
        owner_->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    CGRect frame;
    if (isVertical())
        frame = CGRect::make(isRightToLeft ? area.minX() : area.maxX() - thickness, area.minY(), thickness,
                             std::max(area.height() - endGap, 0.0));
    else
        frame = CGRect::make(area.minX() + (isRightToLeft ? endGap : 0), area.maxY() - thickness,
                             std::max(area.width() - endGap, 0.0), thickness);
    performWithoutAnimation([&] { setFrame(frame); });
    if (state_ == state)
        return;
    state_ = state;
    setNeedsDisplay();
}

void ScrollIndicatorView::show()
{
    performWithoutAnimation([&] { setAlpha(1); });
}

void ScrollIndicatorView::hide(Animated animated)
{
    if (animated == Animated::yes)
        animate(AnimationTiming::easeOut(fadeTime), [&] { setAlpha(0); });
    else
        performWithoutAnimation([&] { setAlpha(0); });
}

// A bar that is not seen comes back when the pointer goes where it was.
std::shared_ptr<UIView> ScrollIndicatorView::hitTest(CGPoint point)
{
    if (isHidden() || !pointInside(point))
        return nullptr;
    return std::static_pointer_cast<UIView>(weak_from_this().lock());
}

void ScrollIndicatorView::pointerEntered()
{
    isUnderPointer_ = true;
    show();
    setNeedsDisplay();
}

void ScrollIndicatorView::pointerExited()
{
    isUnderPointer_ = false;
    released();
}

void ScrollIndicatorView::released()
{
    setNeedsDisplay();
    if (auto alive = scrollView_.lock(); alive && !isInUse())
        owner_->hideIndicatorsLater();
}

CGFloat ScrollIndicatorView::trackLength() const
{
    return std::max((isVertical() ? bounds().height() : bounds().width()) - 2 * edgeGap, 0.0);
}

ScrollIndicatorView::Thumb ScrollIndicatorView::thumb() const
{
    auto track = trackLength();
    auto visible = std::isfinite(state_.visibleFraction) ? std::clamp(state_.visibleFraction, 0.0, 1.0) : 1;
    auto position =
        std::isfinite(state_.positionFraction) ? std::clamp(state_.positionFraction, 0.0, 1.0) : 0;
    auto length = std::min(std::max(track * visible, shortestBar), track);
    return {(track - length) * position, length};
}

CGFloat ScrollIndicatorView::along(const UITouch& touch) const
{
    auto place = touch.location(*this);
    return (isVertical() ? place.y - bounds().minY() : place.x - bounds().minX()) - edgeGap;
}

void ScrollIndicatorView::draw(CGContext& context, CGRect)
{
    auto across = isInUse() ? wideBar : thinBar;
    auto isRightToLeft =
        owner_->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto area = bounds();
    auto start = isVertical() && isRightToLeft ? area.minX() + edgeGap : area.maxX() - edgeGap - across;
    auto bar = [&](CGFloat from, CGFloat length) {
        auto rect = isVertical()
            ? CGRect::make(start, area.minY() + edgeGap + from, across, length)
            : CGRect::make(area.minX() + edgeGap + from, area.maxY() - edgeGap - across, length, across);
        return UIBezierPath::roundedRect(rect, across / 2);
    };
    if (isInUse())
        context.fill(bar(0, trackLength()), UIColor::quaternarySystemFill());
    auto alpha = alphaOfBar(isTracking(), isInUse(), context.appearance().highContrast);
    auto part = thumb();
    context.fill(bar(part.start, part.length), UIColor::label().withAlphaComponent(alpha));
}

bool ScrollIndicatorView::beginTracking(UITouch& touch)
{
    auto alive = scrollView_.lock();
    if (!alive)
        return false;
    show();
    setNeedsDisplay();
    owner_->stopScrolling();
    pressed_ = along(touch);
    auto part = thumb();
    if (pressed_ >= part.start && pressed_ < part.start + part.length) {
        grip_ = pressed_ - part.start;
    } else {
        pageDirection_ = pressed_ < part.start ? -1 : 1;
        owner_->scrollByPages(pageDirection_, axis_);
        auto& loop = RunLoop::main();
        pageAgain_ = loop.schedule(loop.clock().now() + firstRepeat, [this] { pageTowards(); });
    }
    return true;
}

// Until the bar has come under the pointer.
void ScrollIndicatorView::pageTowards()
{
    auto alive = scrollView_.lock();
    auto part = thumb();
    auto isBefore = pressed_ < part.start, isAfter = pressed_ >= part.start + part.length;
    if (!alive || !(pageDirection_ < 0 ? isBefore : isAfter))
        return;
    owner_->scrollByPages(pageDirection_, axis_);
    auto& loop = RunLoop::main();
    pageAgain_ = loop.schedule(loop.clock().now() + nextRepeat, [this] { pageTowards(); });
}

bool ScrollIndicatorView::continueTracking(UITouch& touch)
{
    auto alive = scrollView_.lock();
    if (!alive)
        return false;
    pressed_ = along(touch);
    auto room = trackLength() - thumb().length;
    if (grip_ && room > 0)
        owner_->setScrollFraction(axis_, std::clamp((pressed_ - *grip_) / room, 0.0, 1.0));
    return true;
}

void ScrollIndicatorView::endTracking(UITouch&)
{
    cancelTracking();
}

void ScrollIndicatorView::cancelTracking()
{
    grip_.reset();
    pageAgain_.cancel();
    // Not tracking only when this has returned.
    if (auto alive = scrollView_.lock(); alive && !isUnderPointer_)
        owner_->hideIndicatorsLater();
    setNeedsDisplay();
}

} // namespace platform
