// SPDX-License-Identifier: MIT
#include "platform/uikit/UITextView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/Timer.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/TextViewAccessibility.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <cmath>

namespace platform {

UITextView::UITextView()
{
    setUp();
}

UITextView::UITextView(CGRect frame)
    : UIScrollView(frame)
{
    setUp();
}

UITextView::~UITextView()
{
    stopBlinking();
}

void UITextView::setUp()
{
    assertOnMainThread();
    style_.lineBreak = LineBreak::word;
    setClipsToBounds(true);
    setBackgroundColor(UIColor::systemBackground());
    // The safe area moves the text, not the bounds.
    setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior::never);
}

const TextViewport& UITextView::viewport() const
{
    auto safe = safeAreaInsets();
    // The style comes first: the others measure with its font, and looking up another one takes milliseconds.
    viewport_.setStyle(style_);
    viewport_.setInsets(
        {containerInset_.top + safe.top, containerInset_.left + lineFragmentPadding_ + safe.left,
         containerInset_.bottom + safe.bottom, containerInset_.right + lineFragmentPadding_ + safe.right});
    viewport_.setSize(bounds().size);
    viewport_.setScale(traitCollection().displayScale);
    return viewport_;
}

// --- Contents and look ---------------------------------------------------------------------------

String UITextView::text() const
{
    return buffer_.text();
}

void UITextView::setText(String text)
{
    assertOnMainThread();
    if (text == buffer_.text())
        return;
    endDrag();
    markedRange_.reset();
    history_.clear();
    buffer_ = TextBuffer(std::move(text));
    viewport_.handleNewText();
    setNeedsDisplay();
    notifyAccessibility(*this, AccessibilityEvent::textReplaced);
    select({}, Reveal::no);
    updateScrollIndicators();
}

void UITextView::setFont(const UIFont& font)
{
    assertOnMainThread();
    if (font == style_.font)
        return;
    style_.font = font;
    viewport();
    setNeedsDisplay();
    invalidateIntrinsicContentSize();
    updateScrollIndicators();
}

void UITextView::setTextColor(std::optional<UIColor> color)
{
    assertOnMainThread();
    if (color == textColor_)
        return;
    textColor_ = std::move(color);
    setNeedsDisplay();
}

void UITextView::setTextAlignment(TextAlignment alignment)
{
    assertOnMainThread();
    if (alignment == style_.alignment)
        return;
    style_.alignment = alignment;
    viewport();
    setNeedsDisplay();
}

void UITextView::setTextContainerInset(UIEdgeInsets inset)
{
    assertOnMainThread();
    if (inset == containerInset_)
        return;
    containerInset_ = inset;
    setNeedsLayout();
    setNeedsDisplay();
}

void UITextView::setLineFragmentPadding(CGFloat padding)
{
    assertOnMainThread();
    padding = std::max(0.0, padding);
    if (padding == lineFragmentPadding_)
        return;
    lineFragmentPadding_ = padding;
    setNeedsLayout();
    setNeedsDisplay();
}

void UITextView::setLineBreak(LineBreak lineBreak)
{
    assertOnMainThread();
    if (lineBreak == style_.lineBreak)
        return;
    style_.lineBreak = lineBreak;
    viewport();
    setNeedsDisplay();
    updateScrollIndicators();
}

void UITextView::setHighlighter(Highlighter highlighter)
{
    assertOnMainThread();
    highlighter_ = std::move(highlighter);
    setNeedsDisplay();
}

void UITextView::setEditable(bool editable)
{
    assertOnMainThread();
    if (editable == isEditable_)
        return;
    if (!editable)
        endComposition();
    isEditable_ = editable;
    if (!canBecomeFirstResponder() && isFirstResponder())
        resignFirstResponder();
    restartBlinking();
    setNeedsDisplay();
    notifyAccessibility(*this, AccessibilityEvent::stateChanged);
}

void UITextView::setSelectable(bool selectable)
{
    assertOnMainThread();
    if (selectable == isSelectable_)
        return;
    isSelectable_ = selectable;
    if (!selectable)
        select(TextSelection::caret(selection_.head), Reveal::no);
    if (!canBecomeFirstResponder() && isFirstResponder())
        resignFirstResponder();
}

void UITextView::setDelegate(std::weak_ptr<UITextViewDelegate> delegate)
{
    textDelegate_ = delegate;
    UIScrollView::setDelegate(delegate);
}

// --- Layout --------------------------------------------------------------------------------------

std::optional<CGRect> UITextView::caretRect(Utf8Offset offset) const
{
    auto affinity = offset == selection_.head ? selection_.affinity : CaretAffinity::downstream;
    auto rect = viewport().caretRect(std::clamp(offset, Utf8Offset{0}, buffer_.end()), affinity);
    if (!rect)
        return std::nullopt;
    return rect->offsetBy(bounds().origin.x, bounds().origin.y);
}

Utf8Offset UITextView::closestPosition(CGPoint point) const
{
    return viewport().hit(toViewport(point)).offset;
}

CGSize UITextView::sizeThatFits(CGSize available) const
{
    TextViewport trial(buffer_);
    auto& now = viewport();
    trial.setInsets(now.insets());
    trial.setSize({available.width, 1});
    trial.setStyle(style_);
    return {available.width, std::ceil(trial.contentHeight())};
}

void UITextView::safeAreaInsetsDidChange()
{
    UIScrollView::safeAreaInsetsDidChange();
    setNeedsLayout();
    setNeedsDisplay();
}

void UITextView::didMoveToWindow()
{
    UIScrollView::didMoveToWindow();
    if (!window())
        endDrag();
    restartBlinking();
}

// --- Scrolling -----------------------------------------------------------------------------------

ScrollIndicatorState UITextView::indicatorState(UILayoutAxis axis) const
{
    auto& at = viewport();
    if (axis == UILayoutAxis::horizontal) {
        if (style_.lineBreak != LineBreak::none)
            return {};
        auto extent = at.rowsExtent();
        auto way = extent.most - extent.least;
        return {.visibleFraction = at.size().width / std::max(at.size().width + way, 1.0),
                .positionFraction = way > 0 ? (at.rowsOffset() - extent.least) / way : 0};
    }
    return {.visibleFraction = at.visibleFraction(), .positionFraction = at.fraction()};
}

CGVector UITextView::scrollContent(CGVector delta)
{
    CGVector used{viewport().scrollAlongRowsBy(delta.dx), viewport().scrollBy(delta.dy)};
    if (used.dx != 0 || used.dy != 0)
        didScroll();
    return used;
}

void UITextView::setScrollFraction(UILayoutAxis axis, double fraction)
{
    auto& at = viewport();
    if (axis == UILayoutAxis::horizontal) {
        auto extent = at.rowsExtent();
        at.scrollAlongRowsBy(extent.least + fraction * (extent.most - extent.least) - at.rowsOffset());
    } else {
        at.scrollToFraction(fraction);
    }
    didScroll();
}

void UITextView::scrollToEdge(UILayoutAxis axis, double direction)
{
    auto& at = viewport();
    bool didMove = axis == UILayoutAxis::horizontal ? at.scrollAlongRowsBy(direction < 0 ? -1e9 : 1e9) != 0
        : direction < 0                             ? at.scrollToStart()
                                                    : at.scrollToEnd();
    if (didMove)
        didScroll();
}

void UITextView::scrollOffsetToTop(Utf8Offset offset)
{
    assertOnMainThread();
    stopScrolling();
    if (viewport().scrollToTop(std::clamp(offset, Utf8Offset{0}, buffer_.end())))
        didScroll();
}

void UITextView::scrollRangeToVisible(TextRange range)
{
    assertOnMainThread();
    auto start = std::clamp(range.start, Utf8Offset{0}, buffer_.end());
    auto end = std::clamp(range.end, start, buffer_.end());
    stopScrolling();
    // The start counts when not both ends fit.
    bool didMove = viewport().reveal(end);
    didMove = viewport().reveal(start) || didMove;
    if (didMove)
        didScroll();
}

void UITextView::didScroll()
{
    setNeedsDisplay();
    contentDidScroll();
}

// --- Accessibility -------------------------------------------------------------------------------

AccessibilityProperties UITextView::accessibilityNow() const
{
    auto properties = UIScrollView::accessibilityNow();
    properties.role = AccessibilityRole::textView;
    properties.isMultiLine = true;
    properties.isReadOnly = !isEditable_;
    return properties;
}

AccessibleText* UITextView::accessibleText()
{
    if (!accessibility_)
        accessibility_ = std::make_unique<TextViewAccessibility>(*this);
    return accessibility_.get();
}

} // namespace platform
