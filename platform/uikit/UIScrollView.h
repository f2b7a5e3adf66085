// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/NSLayoutConstraint.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <array>
#include <memory>

namespace platform {

class ScrollIndicatorView;
class ScrollMotion;
class UIPanGestureRecognizer;
class UIScrollView;

// Told of what a scroll view does. Each call may remove the scroll view. Main thread only.
class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView&) { }
    virtual void scrollViewWillBeginDragging(UIScrollView&) { }
    virtual void scrollViewDidEndDragging(UIScrollView&, bool /*willDecelerate*/) { }
    virtual void scrollViewDidEndDecelerating(UIScrollView&) { }
    virtual void scrollViewDidEndScrollingAnimation(UIScrollView&) { }
};

// What a scroll indicator shows of one axis.
struct ScrollIndicatorState {
    double visibleFraction = 1;  // of the content; 1 or more: all of it is seen, there is nothing to scroll
    double positionFraction = 0; // 0 at the start of the content, 1 when its end is seen
    bool operator==(const ScrollIndicatorState&) const = default;
};

// Whether the safe area is added to the content's insets.
enum class ContentInsetAdjustmentBehavior { automatic, always, never };

// A window onto content that may be larger than the view. The content's coordinates are those of the subviews;
// the place that is seen is the origin of `bounds`. Scrolls by wheel, touch pan with after-run, scroll bars and
// keys; never past the content's ends. What it cannot use of a movement goes to the scroll view around it.
//
// A subclass that keeps its place in another way than as a distance (a line, say) overrides the three hooks
// indicatorState, scrollContent and setScrollFraction and gets all the rest. Main thread only.
class UIScrollView : public UIView {
public:
    UIScrollView();
    explicit UIScrollView(CGRect frame);
    ~UIScrollView() override;

    CGSize contentSize() const { return contentSize_; }
    // Sizes that are negative or no numbers count as 0. Keeps the offset inside.
    void setContentSize(CGSize size);
    CGPoint contentOffset() const { return bounds().origin; }
    // Clamped to the content. A gesture or wheel turn under way is stopped. Animated: unless the surroundings ask for
    // reduced motion.
    void setContentOffset(CGPoint offset, Animated animated = Animated::no);
    // The content has become larger or smaller somewhere, and what is seen of it stands at another place in it now:
    // movements go on from there.
    void moveContent(CGSize size, CGPoint offset);
    UIEdgeInsets contentInset() const { return contentInset_; }
    void setContentInset(UIEdgeInsets inset);
    ContentInsetAdjustmentBehavior contentInsetAdjustmentBehavior() const { return insetAdjustment_; }
    void setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior behavior);
    // The content inset and, as the behaviour says, the safe area. `automatic` adds it on axes that scroll.
    UIEdgeInsets adjustedContentInset() const;
    // Moves as little as needed to show `rect` (content coordinates), its start where all of it does not fit.
    void scrollRectToVisible(CGRect rect, Animated animated = Animated::no);

    bool isScrollEnabled() const { return isScrollEnabled_; }
    void setScrollEnabled(bool enabled); // by the user; the program always may
    bool showsVerticalScrollIndicator() const { return showsIndicator_[1]; }
    void setShowsVerticalScrollIndicator(bool shows);
    bool showsHorizontalScrollIndicator() const { return showsIndicator_[0]; }
    void setShowsHorizontalScrollIndicator(bool shows);
    void flashScrollIndicators();

    // Comes to rest at multiples of its own size: a finger's throw, a wheel's notch and a key go to the next one.
    bool isPagingEnabled() const { return isPagingEnabled_; }
    void setPagingEnabled(bool enabled) { isPagingEnabled_ = enabled; }

    bool isDragging() const { return isDragging_; }         // a finger moves the content
    bool isDecelerating() const;                            // it runs on after the finger left
    bool isScrolling() const { return motion_ != nullptr; } // anything but a finger moves it
    static constexpr double decelerationRateNormal = 0.998; // of the speed, each millisecond
    static constexpr double decelerationRateFast = 0.99;
    double decelerationRate = decelerationRateNormal;
    // Stops a movement where it is.
    void stopScrolling();

    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) { delegate_ = std::move(delegate); }
    std::shared_ptr<UIScrollViewDelegate> delegate() const { return delegate_.lock(); }
    // Pans with fingers only; a mouse drag selects or presses what is in the content.
    const std::shared_ptr<UIPanGestureRecognizer>& panGestureRecognizer() const { return pan_; }

    // --- Scrolling on behalf of keys and others; each true when it moved or will move ----------------
    static constexpr CGFloat lineStep = 17; // points
    bool scrollByLines(double lines, UILayoutAxis axis = UILayoutAxis::vertical);
    bool scrollByPages(double pages,
                       UILayoutAxis axis = UILayoutAxis::vertical); // nearly a page: some overlap stays
    bool scrollToStart();
    bool scrollToEnd();
    // Arrows, Page Up and Down, Home, End, Space and Shift Space. Others are left, and those with Control (but Home and
    // End) or Alternate.
    bool scrollByKey(const UIPress& press);
    // Moves by `delta` points (positive shows what is further right and below) as far as it goes, at once, and
    // gives what was not used.
    CGVector scrollBy(CGVector delta);
    // Whether there is anything left in that direction; sign only.
    bool canScroll(UILayoutAxis axis, double direction) const;

    bool pressesBegan(const UIPress& press) override;
    bool scrollWheel(const UIScrollWheel& wheel) override;
    // Keys that nobody took scroll what is in front.
    bool performKeyEquivalent(const UIPress& press) override;
    // Where it does not clip, what its content shows outside of it is hit too; the scroll view itself is not.
    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    bool pointInside(CGPoint point) const override;
    void layoutSubviews() override;
    void safeAreaInsetsDidChange() override;
    void didMoveToWindow() override;
    void pointerEntered() override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    // What the indicators show, and the edges at which scrolling ends.
    virtual ScrollIndicatorState indicatorState(UILayoutAxis axis) const;
    // Moves the content by up to `delta` points and gives the part that was used. Calls contentDidScroll when it moved.
    virtual CGVector scrollContent(CGVector delta);
    // A scroll bar was dragged to 0...1 of the way. Calls contentDidScroll when it moved.
    virtual void setScrollFraction(UILayoutAxis axis, double fraction);
    // The size, the insets or the content has changed: brings the place that is seen back inside of the content.
    virtual void clampToContent();
    // The start (negative) or the end of the content, at once.
    virtual void scrollToEdge(UILayoutAxis axis, double direction);
    // After every move: places the indicators, shows them for a while and tells the delegate. `this` may be gone
    // afterwards if the caller holds no reference.
    void contentDidScroll();
    // The indicators' values have changed although nothing scrolled (the content grew, say).
    void updateScrollIndicators();
    // The place that is seen has changed; before the delegate hears of it.
    virtual void contentOffsetDidChange() { }
    // The part of `bounds` in which indicators stand; default: inside of the safe area.
    virtual CGRect indicatorArea() const;

private:
    friend class ScrollIndicatorView;

    void setUp();
    CGPoint clampedOffset(CGPoint offset) const;
    std::array<CGPoint, 2> offsetLimits() const;
    bool moveOffset(CGPoint offset);
    void handlePan(UIPanGestureRecognizer& pan);
    void startMotion(ScrollMotion motion);
    void stepMotion(Instant frameTime);
    void finishMotion();
    CGVector scrollOutwards(CGVector delta);
    bool settleOnPage(CGPoint speed);
    bool turnPage(CGVector way);
    void settleLater();
    std::shared_ptr<UIScrollView> outerScrollView() const;
    bool move(CGVector way, Animated animated);
    CGFloat pageStep(UILayoutAxis axis) const;
    void hideIndicatorsLater();
    void hideIndicators();
    bool allowsMotion() const;

    // main thread only
    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    ContentInsetAdjustmentBehavior insetAdjustment_ = ContentInsetAdjustmentBehavior::automatic;
    bool isScrollEnabled_ = true;
    bool isDragging_ = false;
    bool isPagingEnabled_ = false;
    Token settling_;                                 // on a page, after a touchpad
    std::array<bool, 2> showsIndicator_{true, true}; // by UILayoutAxis
    std::weak_ptr<UIScrollViewDelegate> delegate_;
    std::shared_ptr<UIPanGestureRecognizer> pan_;
    CGPoint panTaken_;                   // of the pan's translation, so far
    std::optional<CGPoint> exactOffset_; // that contentOffset is, rounded to pixels
    std::unique_ptr<ScrollMotion> motion_;
    Token frames_;
    std::array<std::shared_ptr<ScrollIndicatorView>, 2> indicators_;
    Token indicatorFade_;
};

} // namespace platform
