// SPDX-License-Identifier: MIT
// Where the content is. How the user moves it: UIScrollViewInput.cpp.
#include "platform/uikit/UIScrollView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/ScrollIndicatorView.h"
#include "platform/uikit/ScrollMotion.h"
#include "platform/uikit/UIPanGestureRecognizer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr Duration indicatorStay = 1s;
constexpr double animationTime = 0.3; // seconds

bool isFinite(CGPoint point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

CGFloat clampedLength(CGFloat length)
{
    return std::isfinite(length) ? std::max(length, 0.0) : 0;
}

} // namespace

UIScrollView::UIScrollView()
{
    setUp();
}

UIScrollView::UIScrollView(CGRect frame)
    : UIView(frame)
{
    setUp();
}

UIScrollView::~UIScrollView() = default;

void UIScrollView::setContentSize(CGSize size)
{
    assertOnMainThread();
    size = {clampedLength(size.width), clampedLength(size.height)};
    if (contentSize_ == size)
        return;
    contentSize_ = size;
    clampToContent();
    updateScrollIndicators();
}

void UIScrollView::moveContent(CGSize size, CGPoint offset)
{
    assertOnMainThread();
    auto self = weak_from_this().lock();
    contentSize_ = {clampedLength(size.width), clampedLength(size.height)};
    if (isFinite(offset))
        moveOffset(offset);
    clampToContent();
    updateScrollIndicators();
}

void UIScrollView::setContentInset(UIEdgeInsets inset)
{
    assertOnMainThread();
    auto finite = [](CGFloat value) { return std::isfinite(value) ? value : 0; };
    inset = {finite(inset.top), finite(inset.left), finite(inset.bottom), finite(inset.right)};
    if (contentInset_ == inset)
        return;
    // What was seen at the start of the content stays at its start.
    auto before = offsetLimits()[0], offset = contentOffset();
    contentInset_ = inset;
    auto now = offsetLimits()[0];
    moveOffset({offset.x == before.x ? now.x : offset.x, offset.y == before.y ? now.y : offset.y});
    clampToContent();
    updateScrollIndicators();
}

void UIScrollView::setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior behavior)
{
    assertOnMainThread();
    if (std::exchange(insetAdjustment_, behavior) == behavior)
        return;
    clampToContent();
    updateScrollIndicators();
}

UIEdgeInsets UIScrollView::adjustedContentInset() const
{
    auto inset = contentInset_;
    if (insetAdjustment_ == ContentInsetAdjustmentBehavior::never)
        return inset;
    auto safe = safeAreaInsets();
    auto always = insetAdjustment_ == ContentInsetAdjustmentBehavior::always;
    auto size = bounds().size;
    if (always || contentSize_.width + inset.left + inset.right > size.width) {
        inset.left += safe.left;
        inset.right += safe.right;
    }
    if (always || contentSize_.height + inset.top + inset.bottom + safe.top + safe.bottom > size.height) {
        inset.top += safe.top;
        inset.bottom += safe.bottom;
    }
    return inset;
}

std::array<CGPoint, 2> UIScrollView::offsetLimits() const
{
    auto inset = adjustedContentInset();
    CGPoint first{-inset.left, -inset.top};
    CGPoint last{contentSize_.width + inset.right - bounds().width(),
                 contentSize_.height + inset.bottom - bounds().height()};
    return {first, CGPoint{std::max(first.x, last.x), std::max(first.y, last.y)}};
}

CGPoint UIScrollView::clampedOffset(CGPoint offset) const
{
    auto [first, last] = offsetLimits();
    return {std::clamp(offset.x, first.x, last.x), std::clamp(offset.y, first.y, last.y)};
}

// Rounded to pixels, so that text stays sharp while it moves; what was rounded away is kept for the next step.
bool UIScrollView::moveOffset(CGPoint offset)
{
    auto scale = traitCollection().displayScale;
    auto onPixel = [scale](CGFloat value) { return scale > 0 ? std::round(value * scale) / scale : value; };
    auto exact = clampedOffset(offset);
    auto [first, last] = offsetLimits();
    // The ends themselves may lie between pixels.
    auto rounded = [&](CGFloat value, CGFloat low, CGFloat high) {
        return value == low || value == high ? value : std::clamp(onPixel(value), low, high);
    };
    CGPoint place{rounded(exact.x, first.x, last.x), rounded(exact.y, first.y, last.y)};
    // To stay is no new place: what was rounded away still counts.
    auto isNear =
        exactOffset_ && std::abs(exactOffset_->x - exact.x) < 1 && std::abs(exactOffset_->y - exact.y) < 1;
    if (exact != contentOffset() || !isNear)
        exactOffset_ = exact;
    if (place == contentOffset())
        return false;
    setBounds({place, bounds().size});
    contentDidScroll();
    return true;
}

void UIScrollView::setContentOffset(CGPoint offset, Animated animated)
{
    assertOnMainThread();
    if (!isFinite(offset))
        return;
    auto self = weak_from_this().lock();
    stopScrolling();
    offset = clampedOffset(offset);
    auto present = contentOffset();
    exactOffset_.reset(); // the way is told from where the content is seen
    if (animated == Animated::no || !allowsMotion())
        moveOffset(offset);
    else
        move({offset.x - present.x, offset.y - present.y}, animated);
}

void UIScrollView::scrollRectToVisible(CGRect rect, Animated animated)
{
    assertOnMainThread();
    if (rect.isNull() || !isFinite(rect.origin) || !std::isfinite(rect.width())
        || !std::isfinite(rect.height()))
        return;
    auto inset = adjustedContentInset();
    // The new start of what is seen, from the present one.
    auto placed = [](CGFloat start, CGFloat seen, CGFloat from, CGFloat length) {
        if (from < start || length > seen)
            return from;
        return std::max(start, from + length - seen);
    };
    auto area = bounds();
    auto x =
        placed(area.minX() + inset.left, area.width() - inset.left - inset.right, rect.minX(), rect.width());
    auto y =
        placed(area.minY() + inset.top, area.height() - inset.top - inset.bottom, rect.minY(), rect.height());
    setContentOffset({x - inset.left, y - inset.top}, animated);
}

ScrollIndicatorState UIScrollView::indicatorState(UILayoutAxis axis) const
{
    auto isVertical = axis == UILayoutAxis::vertical;
    auto [first, last] = offsetLimits();
    auto way = isVertical ? last.y - first.y : last.x - first.x;
    auto seen = isVertical ? bounds().height() : bounds().width();
    if (!(way > 0) || !(seen > 0))
        return {};
    auto offset = isVertical ? contentOffset().y - first.y : contentOffset().x - first.x;
    return {.visibleFraction = seen / (seen + way), .positionFraction = std::clamp(offset / way, 0.0, 1.0)};
}

CGVector UIScrollView::scrollContent(CGVector delta)
{
    auto present = contentOffset();
    // Steps smaller than a pixel add up, unless somebody else has moved the content meanwhile.
    auto from = present;
    if (exactOffset_ && std::abs(exactOffset_->x - present.x) < 1
        && std::abs(exactOffset_->y - present.y) < 1)
        from = clampedOffset(*exactOffset_);
    auto to = clampedOffset({from.x + delta.dx, from.y + delta.dy});
    moveOffset(to);
    return {to.x - from.x, to.y - from.y};
}

void UIScrollView::setScrollFraction(UILayoutAxis axis, double fraction)
{
    if (std::isnan(fraction))
        return;
    fraction = std::clamp(fraction, 0.0, 1.0);
    auto [first, last] = offsetLimits();
    auto offset = contentOffset();
    if (axis == UILayoutAxis::vertical)
        offset.y = first.y + (last.y - first.y) * fraction;
    else
        offset.x = first.x + (last.x - first.x) * fraction;
    moveOffset(offset);
}

void UIScrollView::scrollToEdge(UILayoutAxis axis, double direction)
{
    setScrollFraction(axis, direction < 0 ? 0 : 1);
}

void UIScrollView::clampToContent()
{
    moveOffset(contentOffset());
}

CGVector UIScrollView::scrollBy(CGVector delta)
{
    assertOnMainThread();
    if (!std::isfinite(delta.dx) || !std::isfinite(delta.dy))
        return {};
    auto self = weak_from_this().lock();
    auto used = scrollContent(delta);
    return {delta.dx - used.dx, delta.dy - used.dy};
}

bool UIScrollView::canScroll(UILayoutAxis axis, double direction) const
{
    auto state = indicatorState(axis);
    if (!(state.visibleFraction < 1))
        return false;
    return direction < 0 ? state.positionFraction > 0 : direction > 0 && state.positionFraction < 1;
}

void UIScrollView::layoutSubviews()
{
    UIView::layoutSubviews();
    clampToContent();
    updateScrollIndicators();
}

void UIScrollView::safeAreaInsetsDidChange()
{
    UIView::safeAreaInsetsDidChange();
    setNeedsLayout();
}

void UIScrollView::didMoveToWindow()
{
    UIView::didMoveToWindow();
    if (window()) {
        flashScrollIndicators();
        return;
    }
    stopScrolling();
    indicatorFade_.cancel();
}

void UIScrollView::pointerEntered()
{
    UIView::pointerEntered();
    flashScrollIndicators();
}

AccessibilityProperties UIScrollView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::scrollArea;
    return properties;
}

void UIScrollView::contentDidScroll()
{
    auto self = weak_from_this().lock();
    flashScrollIndicators();
    contentOffsetDidChange();
    if (auto delegate = delegate_.lock())
        delegate->scrollViewDidScroll(*this);
}

bool UIScrollView::pointInside(CGPoint point) const
{
    return !clipsToBounds() || UIView::pointInside(point);
}

std::shared_ptr<UIView> UIScrollView::hitTest(CGPoint point)
{
    auto hit = UIView::hitTest(point);
    return hit.get() == this && !bounds().contains(point) ? nullptr : hit;
}

CGRect UIScrollView::indicatorArea() const
{
    auto area = bounds().inset(safeAreaInsets());
    return area.isNull() ? bounds() : area;
}

void UIScrollView::setShowsVerticalScrollIndicator(bool shows)
{
    assertOnMainThread();
    showsIndicator_[1] = shows;
    updateScrollIndicators();
}

void UIScrollView::setShowsHorizontalScrollIndicator(bool shows)
{
    assertOnMainThread();
    showsIndicator_[0] = shows;
    updateScrollIndicators();
}

void UIScrollView::updateScrollIndicators()
{
    if (!weak_from_this().lock())
        return; // it is being made; nobody sees it yet
    std::array<ScrollIndicatorState, 2> states;
    std::array<bool, 2> wanted{};
    for (auto axis : {UILayoutAxis::horizontal, UILayoutAxis::vertical}) {
        auto i = static_cast<std::size_t>(axis);
        states[i] = indicatorState(axis);
        wanted[i] = showsIndicator_[i] && isScrollEnabled_ && states[i].visibleFraction < 1;
    }
    auto gap = wanted[0] && wanted[1] ? ScrollIndicatorView::thickness : 0;
    for (auto axis : {UILayoutAxis::horizontal, UILayoutAxis::vertical}) {
        auto i = static_cast<std::size_t>(axis);
        if (wanted[i] && !indicators_[i])
            indicators_[i] = std::make_shared<ScrollIndicatorView>(*this, axis);
        if (!indicators_[i])
            continue;
        indicators_[i]->setHidden(!wanted[i]);
        // Whoever sets all subviews takes it out without knowing of it.
        if (wanted[i] && indicators_[i]->superview().get() != this)
            addSubview(indicators_[i]);
        if (wanted[i])
            indicators_[i]->place(indicatorArea(), gap, states[i]);
    }
}

void UIScrollView::flashScrollIndicators()
{
    assertOnMainThread();
    updateScrollIndicators();
    auto isShown = false;
    for (auto& indicator : indicators_)
        if (indicator && !indicator->isHidden()) {
            indicator->show();
            isShown = true;
        }
    if (isShown)
        hideIndicatorsLater();
}

void UIScrollView::hideIndicatorsLater()
{
    auto& loop = RunLoop::main();
    indicatorFade_ = loop.schedule(loop.clock().now() + indicatorStay, [this] { hideIndicators(); });
}

void UIScrollView::hideIndicators()
{
    if (isDragging_ || motion_)
        return hideIndicatorsLater();
    for (auto& indicator : indicators_)
        if (indicator && !indicator->isInUse())
            indicator->hide(allowsMotion() ? Animated::yes : Animated::no);
}

bool UIScrollView::allowsMotion() const
{
    return window() && !traitCollection().prefersReducedMotion;
}

// Goes on from an animation that is under way.
bool UIScrollView::move(CGVector way, Animated animated)
{
    if (animated == Animated::no || !allowsMotion()) {
        auto unused = scrollBy(way);
        return unused != way;
    }
    auto now = RunLoop::main().clock().now();
    if (motion_ && motion_->kind() == ScrollMotion::Kind::animation)
        motion_->extend(way, now);
    else
        startMotion(ScrollMotion::animation(way, AnimationTiming::easeOut(animationTime), now));
    return true;
}

} // namespace platform
