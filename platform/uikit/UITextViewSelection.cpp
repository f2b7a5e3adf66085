// SPDX-License-Identifier: MIT
// Selecting with the pointer and with fingers.
#include "platform/uikit/UITextView.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIPasteboard.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <chrono>

namespace platform {

void UITextView::select(TextSelection selection, Reveal reveal)
{
    auto former = selection_;
    selection_ = selection;
    if (former.anchor != selection.anchor || former.head != selection.head
        || former.affinity != selection.affinity) {
        restartBlinking();
        setNeedsDisplay();
        bool hadRange = !former.isEmpty();
        notifyAccessibility(*this, AccessibilityEvent::caretMoved);
        if (hadRange || !selection.isEmpty())
            notifyAccessibility(*this, AccessibilityEvent::selectionChanged);
        if (auto delegate = textDelegate())
            delegate->textViewDidChangeSelection(*this);
    }
    if (reveal == Reveal::yes && viewport().reveal(selection_.head, selection_.affinity))
        didScroll();
}

void UITextView::setSelectedRange(TextRange range)
{
    assertOnMainThread();
    if (!isSelectable_ && !isEditable_)
        return;
    endComposition();
    auto start = std::clamp(range.start, Utf8Offset{0}, buffer_.end());
    auto end = std::clamp(range.end, start, buffer_.end());
    auto wholeStart = buffer_.characterStart(start);
    auto wholeEnd = buffer_.characterStart(end);
    if (wholeEnd < end)
        wholeEnd = buffer_.nextCharacter(wholeEnd);
    history_.closeStep();
    select(TextSelection::of({wholeStart, start == end ? wholeStart : wholeEnd}), Reveal::no);
}

NSRange UITextView::selectedUtf16Range() const
{
    auto range = selection_.range();
    auto start = buffer_.utf16Offset(range.start).value;
    return {start, buffer_.utf16Offset(range.end).value - start};
}

void UITextView::setSelectedUtf16Range(NSRange range)
{
    auto start = std::max<std::int64_t>(range.location, 0);
    setSelectedRange(
        {buffer_.utf8Offset({start}), buffer_.utf8Offset({start + std::max<std::int64_t>(range.length, 0)})});
}

void UITextView::selectAll()
{
    assertOnMainThread();
    if (!isSelectable_)
        return;
    endComposition();
    history_.closeStep();
    select(TextSelection::of({{0}, buffer_.end()}), Reveal::no);
    offerPrimarySelection();
}

TextRange UITextView::unitAround(Utf8Offset offset, SelectionUnit unit) const
{
    switch (unit) {
    case SelectionUnit::character:
        break;
    case SelectionUnit::word:
        return wordAround(buffer_, offset);
    case SelectionUnit::line:
        return lineAround(buffer_, offset);
    }
    return {offset, offset};
}

// --- Pointer and fingers -------------------------------------------------------------------------

void UITextView::touchesBegan(UITouch& touch)
{
    if (touch.type == UITouchType::finger || !canBecomeFirstResponder())
        return;
    if (touch.button == UIPointerButton::primary) {
        beginDrag(touch);
    } else if (touch.button == UIPointerButton::middle && isEditable_) {
        becomeFirstResponder();
        pastePrimarySelection(touch.location(*this));
    }
}

void UITextView::touchesMoved(UITouch& touch)
{
    if (drag_)
        continueDrag(touch.location(*this));
}

void UITextView::touchesEnded(UITouch& touch)
{
    if (touch.type == UITouchType::finger) {
        handleFingerTap(touch);
        return;
    }
    if (!drag_)
        return;
    endDrag();
    offerPrimarySelection();
}

void UITextView::touchesCancelled(UITouch&)
{
    endDrag();
}

void UITextView::beginDrag(UITouch& touch)
{
    auto keepAlive = sharedFrom(this);
    becomeFirstResponder();
    if (!isSelectable_ && !isEditable_)
        return;
    stopScrolling();
    endComposition();
    history_.closeStep();
    auto point = touch.location(*this);
    auto hit = viewport().hit(toViewport(point));
    bool extends = touch.modifiers.contains(UIKeyModifierFlags::shift);
    drag_.emplace();
    drag_->point = point;
    drag_->unit = touch.tapCount >= 3 ? SelectionUnit::line
        : touch.tapCount == 2         ? SelectionUnit::word
                                      : SelectionUnit::character;
    // With Shift, what is selected stays at its other end.
    drag_->base =
        extends ? TextRange{selection_.anchor, selection_.anchor} : unitAround(hit.offset, drag_->unit);
    if (extends || drag_->unit != SelectionUnit::character)
        continueDrag(point);
    else
        select(TextSelection::caret(hit.offset, hit.affinity), Reveal::no);
}

void UITextView::continueDrag(CGPoint point)
{
    if (!drag_)
        return;
    drag_->point = point;
    auto size = viewport().size();
    auto inside = toViewport(point);
    bool isOutside = inside.y < 0 || inside.y > size.height;
    if (!isOutside) {
        drag_->frames.cancel();
    } else if (!drag_->frames) {
        drag_->lastFrame = RunLoop::main().clock().now();
        drag_->frames =
            DisplayLink::shared().request([weak = std::weak_ptr(sharedFrom(this))](Instant frameTime) {
                if (auto self = weak.lock())
                    self->scrollForDrag(frameTime);
            });
    }
    auto hit = viewport().hit({inside.x, std::clamp(inside.y, 0.0, std::max(0.0, size.height - 1))});
    // Past the ends of the text there is nothing more to pass: all of it is meant.
    if (inside.y < 0 && viewport().isAtStart())
        hit = {};
    else if (inside.y > size.height && viewport().isAtEnd())
        hit = {buffer_.end()};
    auto unit = drag_->unit == SelectionUnit::character ? TextRange{hit.offset, hit.offset}
                                                        : unitAround(hit.offset, drag_->unit);
    auto base = drag_->base;
    TextSelection selection;
    if (unit.start < base.start)
        selection = {.anchor = base.end, .head = unit.start};
    else
        selection = {.anchor = base.start, .head = std::max(unit.end, base.end)};
    if (drag_->unit == SelectionUnit::character)
        selection.affinity = hit.affinity;
    select(selection, Reveal::no);
}

// Once a frame while the pointer is held above or below the view: the further away, the faster.
void UITextView::scrollForDrag(Instant frameTime)
{
    if (!drag_)
        return;
    auto seconds = std::chrono::duration<double>(frameTime - drag_->lastFrame).count();
    drag_->lastFrame = frameTime;
    auto y = toViewport(drag_->point).y;
    auto height = viewport().size().height;
    auto beyond = y < 0 ? y : y - height;
    constexpr double pointsASecond = 12; // for each point beyond the edge
    auto distance = std::clamp(beyond * pointsASecond, -4000.0, 4000.0) * std::clamp(seconds, 0.0, 0.1);
    if (viewport().scrollBy(distance) != 0)
        didScroll();
    continueDrag(drag_ ? drag_->point : CGPoint{});
}

void UITextView::endDrag()
{
    drag_.reset();
}

void UITextView::handleFingerTap(const UITouch& touch)
{
    if (!canBecomeFirstResponder())
        return;
    becomeFirstResponder();
    endComposition();
    history_.closeStep();
    auto hit = viewport().hit(toViewport(touch.location(*this)));
    if (touch.tapCount >= 2)
        select(TextSelection::of(
                   unitAround(hit.offset, touch.tapCount == 2 ? SelectionUnit::word : SelectionUnit::line)),
               Reveal::no);
    else
        select(TextSelection::caret(hit.offset, hit.affinity), Reveal::no);
}

std::optional<UIView::Cursor> UITextView::cursorAt(CGPoint) const
{
    if (isSelectable_ || isEditable_)
        return Cursor::text;
    return std::nullopt;
}

// --- The primary selection -----------------------------------------------------------------------

void UITextView::offerPrimarySelection()
{
    if (!selection_.isEmpty() && isSelectable_)
        UIPasteboard::primarySelection().setProvider(buffer_.deferredString(selection_.range()));
}

void UITextView::pastePrimarySelection(CGPoint point)
{
    auto text = UIPasteboard::primarySelection().string();
    if (!text || text->isEmpty() || text->size() > pasteLimit)
        return;
    endComposition();
    select(TextSelection::caret(viewport().hit(toViewport(point)).offset), Reveal::no);
    replaceSelection(*text, Record::other);
}

} // namespace platform
