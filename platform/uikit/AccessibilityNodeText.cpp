// SPDX-License-Identifier: MIT
// The text of a view on the accessibility bus. Nothing here looks at more of the text than it was asked for.
#include "platform/uikit/AccessibilityNode_p.h"
#include "platform/uikit/EventTranslation_p.h"

#include <algorithm>
#include <limits>

namespace platform {

namespace {

// One message of the bus takes 128 MiB at most, and a longer one ends the connection.
constexpr std::size_t longestAnswer = 16 * 1024 * 1024; // UTF-16 units

std::size_t offsetFrom(int offset)
{
    return static_cast<std::size_t>(std::max(offset, 0));
}

int intFrom(std::size_t offset)
{
    return static_cast<int>(std::min(offset, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

AccessibleText::Boundary boundaryFrom(QAccessible::TextBoundaryType boundary)
{
    switch (boundary) {
    case QAccessible::CharBoundary:
        return AccessibleText::Boundary::character;
    case QAccessible::WordBoundary:
        return AccessibleText::Boundary::word;
    case QAccessible::LineBoundary:
        return AccessibleText::Boundary::line;
    case QAccessible::SentenceBoundary: // not known here; a paragraph holds whole ones
    case QAccessible::ParagraphBoundary:
        return AccessibleText::Boundary::paragraph;
    default:
        return AccessibleText::Boundary::document;
    }
}

} // namespace

AccessibleText* AccessibilityNode::content() const
{
    auto view = live();
    return view ? view->accessibleText() : nullptr;
}

QString AccessibilityNode::take(AccessibleText::Range range, int* start, int* end) const
{
    *start = intFrom(range.start);
    *end = intFrom(range.end);
    return text(*start, *end);
}

QString AccessibilityNode::text(int start, int end) const
{
    auto* content = this->content();
    if (!content)
        return {};
    auto count = content->characterCount();
    AccessibleText::Range range{std::min(offsetFrom(start), count),
                                end < 0 ? count : std::min(offsetFrom(end), count)};
    range.end = std::min(range.end, range.start + longestAnswer);
    return range.start < range.end ? QString::fromStdU16String(content->text(range)) : QString();
}

QString AccessibilityNode::textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                        int* end) const
{
    auto* content = this->content();
    *start = *end = -1;
    if (!content)
        return {};
    return take(content->rangeAround(offsetFrom(offset), boundaryFrom(boundary)), start, end);
}

QString AccessibilityNode::textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                            int* end) const
{
    auto* content = this->content();
    *start = *end = -1;
    if (!content)
        return {};
    auto here = content->rangeAround(offsetFrom(offset), boundaryFrom(boundary));
    if (here.start == 0)
        return {};
    return take(content->rangeAround(here.start - 1, boundaryFrom(boundary)), start, end);
}

QString AccessibilityNode::textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                           int* end) const
{
    auto* content = this->content();
    *start = *end = -1;
    if (!content)
        return {};
    auto here = content->rangeAround(offsetFrom(offset), boundaryFrom(boundary));
    if (here.end >= content->characterCount())
        return {};
    return take(content->rangeAround(here.end, boundaryFrom(boundary)), start, end);
}

int AccessibilityNode::characterCount() const
{
    auto* content = this->content();
    return content ? intFrom(content->characterCount()) : 0;
}

int AccessibilityNode::cursorPosition() const
{
    auto* content = this->content();
    return content ? intFrom(content->caretOffset()) : -1;
}

void AccessibilityNode::setCursorPosition(int position)
{
    if (auto* content = this->content())
        content->setCaretOffset(offsetFrom(position));
}

int AccessibilityNode::selectionCount() const
{
    auto* content = this->content();
    if (!content)
        return 0;
    auto selection = content->selection();
    return selection.start < selection.end ? 1 : 0;
}

void AccessibilityNode::selection(int index, int* start, int* end) const
{
    *start = *end = 0;
    auto* content = this->content();
    if (!content || index != 0)
        return;
    auto selection = content->selection();
    *start = intFrom(selection.start);
    *end = intFrom(selection.end);
}

void AccessibilityNode::setSelection(int index, int start, int end)
{
    auto* content = this->content();
    if (content && index == 0)
        content->setSelection({offsetFrom(std::min(start, end)), offsetFrom(std::max(start, end))});
}

void AccessibilityNode::addSelection(int start, int end)
{
    setSelection(0, start, end); // one at a time is all there is
}

void AccessibilityNode::removeSelection(int index)
{
    auto* content = this->content();
    if (content && index == 0) {
        auto caret = content->caretOffset();
        content->setSelection({caret, caret});
    }
}

QRect AccessibilityNode::characterRect(int offset) const
{
    auto* content = this->content();
    auto rect = content ? content->characterRect(offsetFrom(offset)) : CGRect::null();
    return rect.isNull() ? QRect() : onScreen(rect);
}

int AccessibilityNode::offsetAtPoint(const QPoint& point) const
{
    auto* content = this->content();
    if (!content)
        return -1;
    auto* surface = window();
    auto place = surface ? surface->mapFromGlobal(point) : point;
    auto offset = content->offsetAt(pointFrom(place));
    return offset ? intFrom(*offset) : -1;
}

void AccessibilityNode::scrollToSubstring(int start, int end)
{
    if (auto* content = this->content())
        content->scrollTo({offsetFrom(start), offsetFrom(end)});
}

QString AccessibilityNode::attributes(int, int* start, int* end) const
{
    *start = 0;
    *end = characterCount(); // plain text: all of it looks the same
    return {};
}

} // namespace platform
