// SPDX-License-Identifier: MIT
// Changing the text: typing, composing, cut and paste, undo.
#include "platform/uikit/UITextView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIPasteboard.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>

namespace platform {

namespace {

// Assistive technology is read a change of up to this many bytes, and told of a larger one as a whole.
constexpr std::int64_t spokenLimit = 64 * 1024;

} // namespace

// --- The one way in which the text changes -------------------------------------------------------

// Replaces `range`, or does `again` again, and brings all that depends on the text up to date.
TextEdit UITextView::change(const TextEdit* again, TextRange range, const String& text)
{
    if (again)
        range = {again->at, again->at + again->removedSize};
    auto insertedSize = again ? again->insertedSize : static_cast<std::int64_t>(text.size());
    bool isSpoken = range.size() <= spokenLimit && insertedSize <= spokenLimit;
    auto removed = isSpoken ? toUtf16(buffer_.text(range)) : std::u16string();

    TextEdit edit;
    if (again) {
        buffer_.apply(*again);
        edit = *again;
    } else {
        edit = buffer_.replaceSharing(range, text);
    }
    viewport_.handleEdit(range.start, edit.removedSize, edit.insertedSize);
    setNeedsDisplay();
    if (isSpoken) {
        auto offset = static_cast<std::size_t>(buffer_.utf16Offset(range.start).value);
        if (!removed.empty())
            notifyAccessibilityTextRemoved(*this, offset, removed);
        if (edit.insertedSize > 0)
            notifyAccessibilityTextInserted(
                *this, offset, toUtf16(buffer_.text({range.start, range.start + edit.insertedSize})));
    } else {
        notifyAccessibility(*this, AccessibilityEvent::textReplaced);
    }
    return edit;
}

void UITextView::edit(TextRange range, const String& text, Record record)
{
    if (range.isEmpty() && text.isEmpty())
        return;
    auto before = selection_;
    auto edit = change(nullptr, range, textForInput(text));
    auto after = TextSelection::caret(range.start + edit.insertedSize);
    if (record != Record::no) {
        auto kind = record == Record::typing ? UndoHistory::Kind::typing
            : record == Record::deleting     ? UndoHistory::Kind::deleting
                                             : UndoHistory::Kind::other;
        history_.record(std::move(edit), kind, before, after);
    }
    // The old selection may lie outside of the new text: it goes before anybody is told.
    selection_ = TextSelection::caret(std::min(selection_.head, buffer_.end()));
    select(after, Reveal::yes);
}

void UITextView::tellOfChange()
{
    updateScrollIndicators();
    if (auto delegate = textDelegate())
        delegate->textViewDidChange(*this);
}

void UITextView::replaceSelection(const String& text, Record record)
{
    auto keepAlive = sharedFrom(this);
    edit(selection_.range(), text, record);
    tellOfChange();
}

// --- Typing --------------------------------------------------------------------------------------

void UITextView::insertText(std::string_view text)
{
    assertOnMainThread();
    if (!isEditable_)
        return;
    if (markedRange_) {
        // What was composed was never part of what can be undone.
        auto keepAlive = sharedFrom(this);
        edit(*std::exchange(markedRange_, std::nullopt), {}, Record::no);
        if (text.empty())
            return tellOfChange();
    }
    if (!text.empty())
        replaceSelection(String(text), Record::typing);
}

void UITextView::deleteSelectionOr(Utf8Offset end)
{
    endComposition();
    auto range = selection_.isEmpty()
        ? TextRange{std::min(selection_.head, end), std::max(selection_.head, end)}
        : selection_.range();
    if (range.isEmpty())
        return;
    auto keepAlive = sharedFrom(this);
    edit(range, {}, selection_.isEmpty() ? Record::deleting : Record::other);
    tellOfChange();
}

std::string_view UITextView::lineEndOfText() const
{
    auto first = buffer_.lineRange({0});
    auto size = buffer_.lineEndSize(first);
    if (size == 0)
        return "\n";
    return size == 2 ? "\r\n" : buffer_.byteAt(first.end - 1) == '\r' ? "\r" : "\n";
}

// --- Composing -----------------------------------------------------------------------------------

void UITextView::setMarkedText(std::string_view text)
{
    assertOnMainThread();
    if (!isEditable_ || (text.empty() && !markedRange_))
        return;
    auto keepAlive = sharedFrom(this);
    if (!markedRange_ && !selection_.isEmpty())
        edit(selection_.range(), {}, Record::other);
    auto range = markedRange_.value_or(selection_.range());
    markedRange_.reset();
    edit(range, String(text), Record::no);
    if (!text.empty())
        markedRange_ = TextRange{range.start, range.start + std::ssize(text)};
    setNeedsDisplay();
    tellOfChange();
}

// What is composed so far becomes text like any other.
void UITextView::endComposition()
{
    if (!markedRange_)
        return;
    auto text = buffer_.text(*markedRange_);
    insertText(text);
}

CGRect UITextView::caretRectInWindow() const
{
    auto caret = caretRect(selection_.head);
    return convertTo(caret.value_or(CGRect{bounds().origin, {}}), nullptr);
}

// --- Cut, copy, paste ----------------------------------------------------------------------------

bool UITextView::copy()
{
    assertOnMainThread();
    if (selection_.isEmpty() || !isSelectable_)
        return false;
    UIPasteboard::general().setProvider(buffer_.deferredString(selection_.range()));
    return true;
}

bool UITextView::cut()
{
    if (!isEditable_ || !copy())
        return false;
    endComposition();
    replaceSelection({}, Record::other);
    return true;
}

bool UITextView::paste()
{
    assertOnMainThread();
    if (!isEditable_)
        return false;
    auto text = UIPasteboard::general().string();
    if (!text || text->isEmpty() || text->size() > pasteLimit)
        return false;
    endComposition();
    replaceSelection(*text, Record::other);
    return true;
}

// --- Undo ----------------------------------------------------------------------------------------

bool UITextView::undo()
{
    assertOnMainThread();
    endComposition();
    return canUndo() && applyStep(history_.undo(), true);
}

bool UITextView::redo()
{
    assertOnMainThread();
    endComposition();
    return canRedo() && applyStep(history_.redo(), false);
}

bool UITextView::applyStep(const UndoHistory::Step& step, bool backwards)
{
    auto keepAlive = sharedFrom(this);
    auto selection = backwards ? step.before : step.after;
    auto edits = step.edits;
    if (backwards)
        std::ranges::reverse(edits);
    for (auto& edit : edits) {
        auto again = backwards ? edit.reversed() : edit;
        change(&again, {}, {});
    }
    selection_ = TextSelection::caret(std::min(selection_.head, buffer_.end()));
    select(selection, Reveal::yes);
    tellOfChange();
    return true;
}

} // namespace platform
