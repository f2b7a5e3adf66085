// SPDX-License-Identifier: MIT
// What moves a scroll view's content: fingers, wheels, keys, and what runs on after them.
#include "platform/uikit/UIScrollView.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/ScrollIndicatorView.h"
#include "platform/uikit/ScrollMotion.h"
#include "platform/uikit/UIPanGestureRecognizer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr double slowestThrow = 50; // points a second; a finger that leaves slower has stopped
constexpr double linesPerKey = 2;

} // namespace

void UIScrollView::setUp()
{
    setClipsToBounds(true);
    // The scroll view owns the recogniser and is there whenever it recognises.
    pan_ = std::make_shared<UIPanGestureRecognizer>(
        [this](UIGestureRecognizer& pan) { handlePan(static_cast<UIPanGestureRecognizer&>(pan)); });
    pan_->shouldReceive = [this](UIGestureRecognizer&, UITouch& touch) {
        if (touch.type != UITouchType::finger)
            return false;
        if (isDecelerating())
            stopScrolling(); // a finger holds what runs
        return true;
    };
    pan_->shouldBegin = [this](UIGestureRecognizer&) {
        auto way = pan_->translation(*this);
        if (!isScrollEnabled_)
            return false;
        // The direction in which the finger went; the rest is for who scrolls that way.
        return std::abs(way.x) > std::abs(way.y) ? canScroll(UILayoutAxis::horizontal, -way.x)
                                                 : canScroll(UILayoutAxis::vertical, -way.y);
    };
    addGestureRecognizer(pan_);
}

void UIScrollView::setScrollEnabled(bool enabled)
{
    assertOnMainThread();
    if (std::exchange(isScrollEnabled_, enabled) == enabled)
        return;
    auto self = weak_from_this().lock();
    pan_->setEnabled(enabled);
    if (!enabled)
        stopScrolling();
    updateScrollIndicators();
}

void UIScrollView::handlePan(UIPanGestureRecognizer& pan)
{
    auto self = weak_from_this().lock();
    auto state = pan.state();
    if (state == UIGestureRecognizerState::began) {
        stopScrolling();
        isDragging_ = true;
        panTaken_ = {};
        if (auto delegate = delegate_.lock())
            delegate->scrollViewWillBeginDragging(*this);
    }
    if (state != UIGestureRecognizerState::cancelled) {
        auto way = pan.translation(*this);
        auto step = way - std::exchange(panTaken_, way);
        scrollOutwards(scrollBy({-step.x, -step.y}));
    }
    if (state != UIGestureRecognizerState::ended && state != UIGestureRecognizerState::cancelled)
        return;
    isDragging_ = false;
    auto speed = pan.velocity(*this);
    auto isThrown =
        state == UIGestureRecognizerState::ended && window() && std::hypot(speed.x, speed.y) >= slowestThrow;
    auto runsOn = isPagingEnabled_ ? settleOnPage(isThrown ? speed : CGPoint{}) : isThrown;
    if (runsOn && !isPagingEnabled_)
        startMotion(ScrollMotion::deceleration({-speed.x, -speed.y}, decelerationRate,
                                               RunLoop::main().clock().now()));
    if (auto delegate = delegate_.lock())
        delegate->scrollViewDidEndDragging(*this, runsOn);
    hideIndicatorsLater();
}

bool UIScrollView::isDecelerating() const
{
    return motion_ && motion_->kind() == ScrollMotion::Kind::deceleration;
}

void UIScrollView::startMotion(ScrollMotion motion)
{
    stopScrolling();
    motion_ = std::make_unique<ScrollMotion>(motion);
    frames_ = DisplayLink::shared().request([this](Instant time) { stepMotion(time); });
}

void UIScrollView::stepMotion(Instant frameTime)
{
    auto self = weak_from_this().lock();
    auto step = motion_->advance(frameTime);
    auto* moving = motion_.get();
    auto unused = scrollBy(step);
    if (motion_.get() == moving && motion_->kind() != ScrollMotion::Kind::animation)
        unused = scrollOutwards(unused);
    if (motion_.get() != moving)
        return; // the delegate has stopped or replaced it
    // Half a point may be left over by rounding; more is the end of all content.
    constexpr double rounding = 0.5;
    if (std::abs(unused.dx) > rounding)
        motion_->stopHorizontal();
    if (std::abs(unused.dy) > rounding)
        motion_->stopVertical();
    if (motion_->isFinished())
        finishMotion();
}

void UIScrollView::finishMotion()
{
    auto self = weak_from_this().lock();
    auto kind = motion_->kind();
    motion_.reset();
    frames_.cancel();
    hideIndicatorsLater();
    auto delegate = delegate_.lock();
    if (delegate && kind == ScrollMotion::Kind::deceleration)
        delegate->scrollViewDidEndDecelerating(*this);
    if (delegate && kind == ScrollMotion::Kind::animation)
        delegate->scrollViewDidEndScrollingAnimation(*this);
}

void UIScrollView::stopScrolling()
{
    assertOnMainThread();
    if (motion_)
        finishMotion();
}

std::shared_ptr<UIScrollView> UIScrollView::outerScrollView() const
{
    for (auto view = superview(); view; view = view->superview())
        if (auto scrollView = std::dynamic_pointer_cast<UIScrollView>(view))
            return scrollView;
    return nullptr;
}

// Gives what nobody around used either.
CGVector UIScrollView::scrollOutwards(CGVector delta)
{
    for (auto outer = outerScrollView(); outer && delta != CGVector{}; outer = outer->outerScrollView())
        if (outer->isScrollEnabled_)
            delta = outer->scrollBy(delta);
    return delta;
}

// The page that a throw goes to; the nearest one without speed. True when there is a way to go.
bool UIScrollView::settleOnPage(CGPoint speed)
{
    auto offset = contentOffset();
    auto nearest = [](CGFloat place, CGFloat length, CGFloat thrown) {
        if (!(length > 0))
            return place;
        auto page = place / length;
        // A finger that moves left throws to what is on the right.
        return length * (thrown < 0 ? std::ceil(page) : thrown > 0 ? std::floor(page) : std::round(page));
    };
    auto target = clampedOffset(
        {nearest(offset.x, bounds().width(), speed.x), nearest(offset.y, bounds().height(), speed.y)});
    if (target == offset)
        return false;
    setContentOffset(target, Animated::yes);
    return true;
}

// One page for a notch, and for as many as come while it turns.
bool UIScrollView::turnPage(CGVector way)
{
    auto axis = std::abs(way.dx) > std::abs(way.dy) ? UILayoutAxis::horizontal : UILayoutAxis::vertical;
    // A wheel has one axis: it turns pages that lie side by side too.
    auto step = axis == UILayoutAxis::horizontal ? way.dx : way.dy;
    if (axis == UILayoutAxis::vertical && !(indicatorState(axis).visibleFraction < 1))
        axis = UILayoutAxis::horizontal;
    if (motion_)
        return canScroll(axis, step);
    return scrollByPages(step < 0 ? -1 : 1, axis);
}

// A touchpad does not say when the fingers leave.
void UIScrollView::settleLater()
{
    constexpr auto rest = std::chrono::milliseconds(120);
    auto& loop = RunLoop::main();
    settling_ = loop.schedule(loop.clock().now() + rest, [this] { settleOnPage({}); });
}

bool UIScrollView::scrollWheel(const UIScrollWheel& wheel)
{
    assertOnMainThread();
    auto way = CGVector{-wheel.delta.dx, -wheel.delta.dy};
    auto isNumber = std::isfinite(way.dx) && std::isfinite(way.dy);
    // With Control a wheel zooms, which is for others.
    if (!isNumber || !isScrollEnabled_ || wheel.modifiers.contains(UIKeyModifierFlags::control))
        return UIView::scrollWheel(wheel);
    auto self = weak_from_this().lock();
    if (isPagingEnabled_ && !wheel.isPrecise)
        return turnPage(way) || UIView::scrollWheel(wheel);
    CGVector mine{canScroll(UILayoutAxis::horizontal, way.dx) ? way.dx : 0,
                  canScroll(UILayoutAxis::vertical, way.dy) ? way.dy : 0};
    CGVector rest{way.dx - mine.dx, way.dy - mine.dy};
    auto isUsed = mine != CGVector{};
    if (isUsed && (wheel.isPrecise || !allowsMotion())) {
        stopScrolling();
        auto unused = scrollBy(mine);
        if (isPagingEnabled_)
            settleLater();
        rest = {rest.dx + unused.dx, rest.dy + unused.dy};
    } else if (isUsed) {
        auto now = RunLoop::main().clock().now();
        if (motion_ && motion_->kind() == ScrollMotion::Kind::wheel)
            motion_->extend(mine, now);
        else
            startMotion(ScrollMotion::wheel(mine, now));
    }
    if (rest == CGVector{})
        return isUsed;
    auto outwards = wheel;
    outwards.delta = {-rest.dx, -rest.dy};
    return UIView::scrollWheel(outwards) || isUsed;
}

CGFloat UIScrollView::pageStep(UILayoutAxis axis) const
{
    auto inset = adjustedContentInset();
    auto seen = axis == UILayoutAxis::vertical ? bounds().height() - inset.top - inset.bottom
                                               : bounds().width() - inset.left - inset.right;
    if (isPagingEnabled_)
        return seen;
    return std::max(seen - 2 * lineStep, seen / 2);
}

bool UIScrollView::scrollByLines(double lines, UILayoutAxis axis)
{
    assertOnMainThread();
    if (isPagingEnabled_)
        return scrollByPages(lines < 0 ? -1 : 1, axis);
    auto way = lines * lineStep;
    if (!std::isfinite(way) || !canScroll(axis, way))
        return false;
    return move(axis == UILayoutAxis::vertical ? CGVector{0, way} : CGVector{way, 0}, Animated::yes);
}

bool UIScrollView::scrollByPages(double pages, UILayoutAxis axis)
{
    assertOnMainThread();
    auto way = pages * pageStep(axis);
    if (!std::isfinite(way) || !canScroll(axis, way))
        return false;
    if (isPagingEnabled_) {
        auto target = contentOffset();
        auto& place = axis == UILayoutAxis::vertical ? target.y : target.x;
        auto length = pageStep(axis);
        place = length > 0 ? (std::round(place / length) + pages) * length : place;
        setContentOffset(target, Animated::yes);
        return true;
    }
    return move(axis == UILayoutAxis::vertical ? CGVector{0, way} : CGVector{way, 0}, Animated::yes);
}

bool UIScrollView::scrollToStart()
{
    assertOnMainThread();
    auto self = weak_from_this().lock();
    stopScrolling();
    auto moves = canScroll(UILayoutAxis::vertical, -1);
    if (moves)
        scrollToEdge(UILayoutAxis::vertical, -1);
    return moves;
}

bool UIScrollView::scrollToEnd()
{
    assertOnMainThread();
    auto self = weak_from_this().lock();
    stopScrolling();
    auto moves = canScroll(UILayoutAxis::vertical, 1);
    if (moves)
        scrollToEdge(UILayoutAxis::vertical, 1);
    return moves;
}

bool UIScrollView::scrollByKey(const UIPress& press)
{
    auto flags = press.modifiers.rawValue & ~UIKeyModifierFlags::keypad;
    auto isPlain = flags == 0;
    auto isControl = flags == UIKeyModifierFlags::control;
    switch (press.key) {
    case UIKeyCode::up:
        return isPlain && scrollByLines(-linesPerKey);
    case UIKeyCode::down:
        return isPlain && scrollByLines(linesPerKey);
    case UIKeyCode::left:
        return isPlain && scrollByLines(-linesPerKey, UILayoutAxis::horizontal);
    case UIKeyCode::right:
        return isPlain && scrollByLines(linesPerKey, UILayoutAxis::horizontal);
    case UIKeyCode::pageUp:
        return isPlain && scrollByPages(-1);
    case UIKeyCode::pageDown:
        return isPlain && scrollByPages(1);
    case UIKeyCode::space:
        return isPlain ? scrollByPages(1) : flags == UIKeyModifierFlags::shift && scrollByPages(-1);
    case UIKeyCode::home:
        return (isPlain || isControl) && scrollToStart();
    case UIKeyCode::end:
        return (isPlain || isControl) && scrollToEnd();
    default:
        return false;
    }
}

bool UIScrollView::performKeyEquivalent(const UIPress& press)
{
    return isScrollEnabled_ && scrollByKey(press);
}

bool UIScrollView::pressesBegan(const UIPress& press)
{
    return (isScrollEnabled_ && scrollByKey(press)) || UIView::pressesBegan(press);
}

} // namespace platform
