// SPDX-License-Identifier: MIT
// What keys do in a text view.
#include "platform/uikit/UITextView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

using Flags = UIKeyModifierFlags;

struct KeyMovement {
    UIKeyCode key;
    bool withControl;
    TextMovement movement;
};
constexpr std::array keyMovements = {
    KeyMovement{UIKeyCode::left, false, TextMovement::left},
    KeyMovement{UIKeyCode::right, false, TextMovement::right},
    KeyMovement{UIKeyCode::up, false, TextMovement::up},
    KeyMovement{UIKeyCode::down, false, TextMovement::down},
    KeyMovement{UIKeyCode::pageUp, false, TextMovement::pageUp},
    KeyMovement{UIKeyCode::pageDown, false, TextMovement::pageDown},
    KeyMovement{UIKeyCode::home, false, TextMovement::rowStart},
    KeyMovement{UIKeyCode::end, false, TextMovement::rowEnd},
    KeyMovement{UIKeyCode::left, true, TextMovement::wordLeft},
    KeyMovement{UIKeyCode::right, true, TextMovement::wordRight},
    KeyMovement{UIKeyCode::up, true, TextMovement::lineStart},
    KeyMovement{UIKeyCode::down, true, TextMovement::lineEnd},
    KeyMovement{UIKeyCode::home, true, TextMovement::documentStart},
    KeyMovement{UIKeyCode::end, true, TextMovement::documentEnd},
};

bool isPlain(const UIPress& press)
{
    return !press.modifiers.contains(Flags::control) && !press.modifiers.contains(Flags::alternate)
        && !press.modifiers.contains(Flags::command);
}

bool isPrintable(std::string_view characters)
{
    return !characters.empty() && static_cast<unsigned char>(characters.front()) >= 0x20
        && characters.front() != 0x7F;
}

} // namespace

bool UITextView::pressesBegan(const UIPress& press)
{
    assertOnMainThread();
    auto keepAlive = sharedFrom(this);
    bool isHandled = handleCommand(press) || handleMovement(press)
        || (isEditable_ ? handleEditingKey(press) : handleReadingKey(press));
    return isHandled || UIView::pressesBegan(press);
}

bool UITextView::handleCommand(const UIPress& press)
{
    bool hasShift = press.modifiers.contains(Flags::shift);
    bool hasControl = press.modifiers.contains(Flags::control);
    if (press.modifiers.contains(Flags::alternate) || press.modifiers.contains(Flags::command))
        return false;
    if (press.key == UIKeyCode::insert && hasControl != hasShift) {
        if (hasShift && !isEditable_)
            return false;
        hasControl ? copy() : paste();
        return true;
    }
    if (press.key == UIKeyCode::deleteForward && hasShift && !hasControl && isEditable_) {
        cut();
        return true;
    }
    if (!hasControl || press.key != UIKeyCode::character)
        return false;
    auto& key = press.charactersIgnoringModifiers;
    if (key == "a" && isSelectable_)
        selectAll();
    else if (key == "c" && !hasShift && isSelectable_)
        copy();
    else if (!isEditable_)
        return false;
    else if (key == "x")
        cut();
    else if (key == "v")
        paste();
    else if (key == "y" || (key == "z" && hasShift))
        redo();
    else if (key == "z")
        undo();
    else
        return false;
    return true;
}

bool UITextView::handleMovement(const UIPress& press)
{
    bool extends = press.modifiers.contains(Flags::shift);
    // A text that is only read has no caret to move: without Shift these keys scroll.
    if (press.modifiers.contains(Flags::alternate) || (!isEditable_ && !(extends && isSelectable_)))
        return false;
    bool hasControl = press.modifiers.contains(Flags::control);
    auto found = std::ranges::find_if(keyMovements, [&](const KeyMovement& each) {
        return each.key == press.key && each.withControl == hasControl;
    });
    if (found == keyMovements.end())
        return false;
    move(found->movement, extends ? Extend::yes : Extend::no);
    return true;
}

void UITextView::move(TextMovement movement, Extend extend)
{
    stopScrolling();
    endComposition();
    history_.closeStep();
    auto& at = viewport();
    // The reader does not see where the caret was left: what is seen counts.
    if (!isEditable_ && selection_.isEmpty() && !at.caretRect(selection_.head))
        selection_ = TextSelection::caret(at.hit({0, 0}).offset);
    auto selection = moved(buffer_, at, selection_, movement, extend);
    if (movement == TextMovement::pageUp || movement == TextMovement::pageDown) {
        auto page = std::max(at.size().height - at.lineHeight(), at.lineHeight());
        if (at.scrollBy(movement == TextMovement::pageUp ? -page : page) != 0)
            didScroll();
    }
    select(selection, Reveal::yes);
    if (extend == Extend::yes)
        offerPrimarySelection();
}

bool UITextView::handleReadingKey(const UIPress& press)
{
    if (press.modifiers.contains(Flags::control)) {
        if (press.key == UIKeyCode::home)
            scrollToStart();
        else if (press.key == UIKeyCode::end)
            scrollToEnd();
        else
            return false;
        return true;
    }
    // Space is left to whoever shows the text.
    if (press.key == UIKeyCode::space || !isPlain(press))
        return false;
    return scrollByKey(press);
}

bool UITextView::handleEditingKey(const UIPress& press)
{
    bool byWord = press.modifiers.contains(Flags::control);
    switch (press.key) {
    case UIKeyCode::deleteBackward:
        deleteSelectionOr(byWord ? buffer_.previousWordStart(selection_.head)
                                 : buffer_.previousCharacter(selection_.head));
        return true;
    case UIKeyCode::deleteForward:
        deleteSelectionOr(byWord ? buffer_.nextWordEnd(selection_.head)
                                 : buffer_.nextCharacter(selection_.head));
        return true;
    case UIKeyCode::returnKey:
        if (!isPlain(press))
            return false;
        insertText(lineEndOfText());
        return true;
    case UIKeyCode::tab:
        if (!isPlain(press) || press.modifiers.contains(Flags::shift))
            return false;
        insertText("\t");
        return true;
    case UIKeyCode::character:
    case UIKeyCode::space:
        if (!isPlain(press) || !isPrintable(press.characters))
            return false;
        insertText(press.characters);
        return true;
    default:
        return false;
    }
}

bool UITextView::becomeFirstResponder()
{
    bool was = isFirstResponder();
    if (!UIScrollView::becomeFirstResponder())
        return false;
    if (!was) {
        restartBlinking();
        setNeedsDisplay();
        if (auto delegate = textDelegate(); delegate && isEditable_)
            delegate->textViewDidBeginEditing(*this);
    }
    return true;
}

bool UITextView::resignFirstResponder()
{
    bool was = isFirstResponder();
    endComposition();
    if (!UIScrollView::resignFirstResponder())
        return false;
    if (was) {
        stopBlinking();
        setNeedsDisplay();
        if (auto delegate = textDelegate(); delegate && isEditable_)
            delegate->textViewDidEndEditing(*this);
    }
    return true;
}

} // namespace platform
