// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSRange.h"
#include "platform/foundation/String.h"
#include "platform/graphics/TextLayout.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/text/TextNavigation.h"
#include "platform/uikit/text/TextSelection.h"
#include "platform/uikit/text/UndoHistory.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

class TextViewAccessibility;
class Timer;

// Told of what happens in a text view, besides its scrolling. Each call may remove the text view.
// Main thread only.
class UITextViewDelegate : public UIScrollViewDelegate {
public:
    virtual void textViewDidBeginEditing(UITextView&) { }
    virtual void textViewDidEndEditing(UITextView&) { }
    // The user changed the text; not called for what the program does.
    virtual void textViewDidChange(UITextView&) { }
    virtual void textViewDidChangeSelection(UITextView&) { }
};

// A scrolling view of a text of any size, in one font, that can be selected and, if it is editable, edited.
// The text is never copied and never laid out as a whole: opening, jumping to the end, changing the font or
// the width cost the same for a kilobyte and for a gigabyte.
//
// Scrolls by lines of text, not by a distance: `bounds` keeps its origin, the content offset and size of the
// scroll view stay zero, and textOffset() and textHeight() are estimates. Main thread only.
class UITextView : public UIScrollView, public UITextInput {
public:
    UITextView();
    explicit UITextView(CGRect frame);
    ~UITextView() override;

    // --- Contents and look ------------------------------------------------------------------------
    // Shared with the caller while nobody has edited it; a copy, made at the first question, afterwards.
    String text() const;
    // Shares `text`. Selects nothing, goes to the start and forgets what could be undone. The text that is
    // shown already changes nothing.
    void setText(String text);
    const UIFont& font() const { return style_.font; }
    // The character at the top left corner stays there.
    void setFont(const UIFont& font);
    const std::optional<UIColor>& textColor() const { return textColor_; } // none: the label colour
    void setTextColor(std::optional<UIColor> color);
    TextAlignment textAlignment() const { return style_.alignment; }
    void setTextAlignment(TextAlignment alignment);
    // Between the view's edges and the text, besides the safe area.
    UIEdgeInsets textContainerInset() const { return containerInset_; }
    void setTextContainerInset(UIEdgeInsets inset);
    // At both ends of every line, besides.
    CGFloat lineFragmentPadding() const { return lineFragmentPadding_; }
    void setLineFragmentPadding(CGFloat padding);

    LineBreak lineBreak() const { return style_.lineBreak; } // default: between words
    // `none` lets lines be as long as they are; the view then scrolls along them. The character at the top stays.
    void setLineBreak(LineBreak lineBreak);
    // Gives the ranges inside of the text that is seen which are to be tinted, in order, whenever that is painted;
    // the one that is selected is tinted more strongly. None: nothing is.
    using Highlighter = std::function<std::vector<TextRange>(TextRange seen)>;
    void setHighlighter(Highlighter highlighter);

    bool isEditable() const { return isEditable_; } // default: true
    void setEditable(bool editable);
    bool isSelectable() const { return isSelectable_; } // default: true
    void setSelectable(bool selectable);

    void setDelegate(std::weak_ptr<UITextViewDelegate> delegate);

    // --- Selection --------------------------------------------------------------------------------
    // In bytes of UTF-8. A range that is set is clamped to the text and widened to whole characters.
    TextRange selectedRange() const { return selection_.range(); }
    void setSelectedRange(TextRange range);
    // The same in UTF-16 units; counts all units before the range once, unless the text is ASCII.
    NSRange selectedUtf16Range() const;
    void setSelectedUtf16Range(NSRange range);
    void selectAll();
    void scrollRangeToVisible(TextRange range);
    // The row that holds `offset` goes to the top edge, as far as the text reaches.
    void scrollOffsetToTop(Utf8Offset offset);
    // The text as it is, for those who search in it. Valid while the view lives.
    const TextBuffer& buffer() const { return buffer_; }

    // --- What the user does with the text, as keys and menus ask for it ---------------------------
    // Each true when it did something. Copying takes no time and no memory before somebody pastes, as long
    // as the text has not been edited.
    bool copy();
    bool cut();
    bool paste();
    bool undo();
    bool redo();
    bool canUndo() const { return isEditable_ && history_.canUndo(); }
    bool canRedo() const { return isEditable_ && history_.canRedo(); }
    // Texts larger than this are not pasted.
    static constexpr std::size_t pasteLimit = std::size_t{256} << 20; // bytes

    // --- Layout -----------------------------------------------------------------------------------
    // The text that is seen, with lines that are cut by the edges.
    TextRange visibleRange() const { return viewport().visibleRange(); }
    // In own coordinates; nothing when it is out of sight.
    std::optional<CGRect> caretRect(Utf8Offset offset) const;
    Utf8Offset closestPosition(CGPoint point) const;
    // Points of text above the top edge and in all, insets included: estimates for what was not seen yet.
    CGFloat textOffset() const { return viewport().contentOffset(); }
    CGFloat textHeight() const { return viewport().contentHeight(); }
    CGSize sizeThatFits(CGSize available) const override;
    // How many lines or parts of lines have been shaped so far.
    std::int64_t shapingCount() const { return viewport_.shapingCount(); }

    // --- UITextInput ------------------------------------------------------------------------------
    UITextInput* textInput() override { return isEditable_ ? this : nullptr; }
    void insertText(std::string_view text) override;
    void setMarkedText(std::string_view text) override;
    CGRect caretRectInWindow() const override;
    std::optional<TextRange> markedRange() const { return markedRange_; }

    // --- UIResponder, UIView ----------------------------------------------------------------------
    bool canBecomeFirstResponder() const override { return isEditable_ || isSelectable_; }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    bool pressesBegan(const UIPress& press) override;
    void touchesBegan(UITouch& touch) override;
    void touchesMoved(UITouch& touch) override;
    void touchesEnded(UITouch& touch) override;
    void touchesCancelled(UITouch& touch) override;
    std::optional<Cursor> cursorAt(CGPoint point) const override;
    void draw(CGContext& context, CGRect dirty) override;
    void safeAreaInsetsDidChange() override;
    void didMoveToWindow() override;
    AccessibilityProperties accessibilityNow() const override;
    AccessibleText* accessibleText() override;

protected:
    ScrollIndicatorState indicatorState(UILayoutAxis axis) const override;
    CGVector scrollContent(CGVector delta) override;
    void setScrollFraction(UILayoutAxis axis, double fraction) override;
    void scrollToEdge(UILayoutAxis axis, double direction) override;
    // What is put in for a text that was typed, pasted or composed; as long as that, in bytes.
    virtual String textForInput(const String& text) const { return text; }

private:
    friend class TextViewAccessibility;
    // How much a drag selects at a time, and what it began with.
    enum class SelectionUnit { character, word, line };
    struct Drag {
        Drag() { } // written out: a defaulted one is not complete yet where the optional below needs it
        SelectionUnit unit = SelectionUnit::character;
        TextRange base;
        CGPoint point; // own coordinates, where the pointer is
        Token frames;  // while it scrolls
        Instant lastFrame;
    };
    enum class Reveal { no, yes };
    enum class Record { no, typing, deleting, other };

    void setUp();
    // The viewport as the view's size, insets and style have it now.
    const TextViewport& viewport() const;
    TextViewport& viewport() { return const_cast<TextViewport&>(std::as_const(*this).viewport()); }
    CGPoint toViewport(CGPoint point) const { return point - bounds().origin; }

    // selection
    void select(TextSelection selection, Reveal reveal);
    TextRange unitAround(Utf8Offset offset, SelectionUnit unit) const;
    void beginDrag(UITouch& touch);
    void continueDrag(CGPoint point);
    void scrollForDrag(Instant frameTime);
    void endDrag();
    void handleFingerTap(const UITouch& touch);
    void offerPrimarySelection();
    void pastePrimarySelection(CGPoint point);

    // keyboard
    bool handleCommand(const UIPress& press);
    bool handleMovement(const UIPress& press);
    bool handleEditingKey(const UIPress& press);
    bool handleReadingKey(const UIPress& press);
    void move(TextMovement movement, Extend extend);

    // editing
    void edit(TextRange range, const String& text, Record record);
    void replaceSelection(const String& text, Record record);
    void deleteSelectionOr(Utf8Offset end);
    bool applyStep(const UndoHistory::Step& step, bool backwards);
    void endComposition();
    TextEdit change(const TextEdit* again, TextRange range, const String& text);
    void tellOfChange();
    std::string_view lineEndOfText() const;

    // drawing
    bool showsCaret() const;
    void restartBlinking();
    void stopBlinking();
    void setNeedsDisplayOfCaret();
    void drawHighlights(CGContext& context, CGPoint origin) const;
    void drawSelection(CGContext& context, CGPoint origin) const;
    void drawComposition(CGContext& context, CGPoint origin) const;

    void didScroll();
    std::shared_ptr<UITextViewDelegate> textDelegate() const { return textDelegate_.lock(); }

    // main thread only
    TextBuffer buffer_;
    mutable TextViewport viewport_{buffer_};
    TextStyle style_;
    std::optional<UIColor> textColor_;
    UIEdgeInsets containerInset_{8, 0, 8, 0};
    CGFloat lineFragmentPadding_ = 5;
    bool isEditable_ = true;
    bool isSelectable_ = true;

    TextSelection selection_;
    std::optional<TextRange> markedRange_;
    UndoHistory history_;
    std::optional<Drag> drag_;

    std::shared_ptr<Timer> blink_; // while a caret shows
    bool isCaretLit_ = false;

    std::weak_ptr<UITextViewDelegate> textDelegate_;
    Highlighter highlighter_;
    std::unique_ptr<TextViewAccessibility> accessibility_; // made when asked for
};

} // namespace platform
