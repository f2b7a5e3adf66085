// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIScrollView.h"

namespace platform {

// A scroll bar over the content's edge: a thin bar while the content moves, a wide one under the pointer, gone
// otherwise. The bar can be dragged; pressing beside it goes page by page towards the pointer. A part of its
// scroll view, which says what it shows.
class ScrollIndicatorView : public UIControl {
public:
    ScrollIndicatorView(UIScrollView& scrollView, UILayoutAxis axis);

    // `area`: where indicators may stand, in the scroll view's coordinates. `endGap` is kept for the bar of the
    // other axis.
    void place(CGRect area, CGFloat endGap, ScrollIndicatorState state);
    void show();
    void hide(Animated animated);
    bool isInUse() const { return isUnderPointer_ || isTracking(); }

    static constexpr CGFloat thickness = 12; // of the part that takes the pointer

    bool keepsTouchesFrom(const UIGestureRecognizer&) const override { return true; }
    bool canBecomeFirstResponder() const override { return false; }
    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    void pointerEntered() override;
    void pointerExited() override;
    std::optional<Cursor> cursorAt(CGPoint) const override { return Cursor::arrow; }
    void draw(CGContext& context, CGRect dirty) override;

protected:
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;

private:
    struct Thumb {
        CGFloat start = 0;
        CGFloat length = 0;
    };
    bool isVertical() const { return axis_ == UILayoutAxis::vertical; }
    CGFloat trackLength() const;
    Thumb thumb() const; // along the axis, from the track's start
    CGFloat along(const UITouch& touch) const;
    void pageTowards();
    void released();

    // fixed after construction
    const std::weak_ptr<UIView> scrollView_;
    UIScrollView* const owner_; // as long as scrollView_ is there
    const UILayoutAxis axis_;
    // main thread only
    ScrollIndicatorState state_;
    bool isUnderPointer_ = false;
    std::optional<CGFloat> grip_; // where in the thumb it was taken, while it is dragged
    CGFloat pressed_ = 0;         // along the track
    double pageDirection_ = 0;
    Token pageAgain_;
};

} // namespace platform
