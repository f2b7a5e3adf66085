// SPDX-License-Identifier: MIT
#include "platform/uikit/TextViewAccessibility.h"

#include "platform/uikit/UITextView.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>
#include <limits>

namespace platform {

Utf8Offset TextViewAccessibility::toUtf8(std::size_t offset) const
{
    constexpr auto largest = static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max());
    return view_.buffer_.utf8Offset({static_cast<std::int64_t>(std::min(offset, largest))});
}

std::size_t TextViewAccessibility::fromUtf8(Utf8Offset offset) const
{
    return static_cast<std::size_t>(view_.buffer_.utf16Offset(offset).value);
}

AccessibleText::Range TextViewAccessibility::fromUtf8(TextRange range) const
{
    return {fromUtf8(range.start), fromUtf8(range.end)};
}

std::size_t TextViewAccessibility::characterCount() const
{
    return static_cast<std::size_t>(view_.buffer_.utf16Size());
}

std::u16string TextViewAccessibility::text(Range range) const
{
    auto start = toUtf8(range.start);
    auto end = std::max(start, toUtf8(range.end));
    return toUtf16(view_.buffer_.text({start, end}));
}

std::size_t TextViewAccessibility::caretOffset() const
{
    return fromUtf8(view_.selection_.head);
}

void TextViewAccessibility::setCaretOffset(std::size_t offset)
{
    auto at = toUtf8(offset);
    view_.setSelectedRange({at, at});
    view_.scrollRangeToVisible({at, at});
}

AccessibleText::Range TextViewAccessibility::selection() const
{
    return fromUtf8(view_.selection_.range());
}

void TextViewAccessibility::setSelection(Range range)
{
    auto start = toUtf8(std::min(range.start, range.end));
    view_.setSelectedRange({start, toUtf8(std::max(range.start, range.end))});
}

TextRange TextViewAccessibility::rowAround(Utf8Offset offset) const
{
    auto shaped = view_.viewport().shapedAt(offset);
    auto& rows = shaped->layout.lines();
    auto row = shaped->layout.lineOf(shaped->inside(offset));
    auto end = row + 1 == rows.size() ? shaped->fragment.range.end : shaped->outside(rows[row].bytes.end);
    return {shaped->outside(rows[row].bytes.begin), end};
}

AccessibleText::Range TextViewAccessibility::rangeAround(std::size_t offset, Boundary boundary) const
{
    auto& text = view_.buffer_;
    auto at = toUtf8(offset);
    switch (boundary) {
    case Boundary::character: {
        auto start = text.characterStart(at);
        return fromUtf8(TextRange{start, text.nextCharacter(start)});
    }
    case Boundary::word:
        return fromUtf8(text.wordRange(at));
    case Boundary::line:
        return fromUtf8(rowAround(at));
    case Boundary::paragraph:
        return fromUtf8(lineAround(text, at));
    case Boundary::document:
        break;
    }
    return {0, characterCount()};
}

CGRect TextViewAccessibility::characterRect(std::size_t offset) const
{
    auto& text = view_.buffer_;
    auto start = text.characterStart(toUtf8(offset));
    CGRect rect = CGRect::null();
    for (auto& part : view_.viewport().selectionRects({start, text.nextCharacter(start)}))
        rect = rect.unionWith(part);
    if (rect.isNull()) {
        // The place after the last character has a caret, but nothing to select.
        auto caret = view_.caretRect(start);
        if (!caret)
            return rect;
        rect = caret->offsetBy(-view_.bounds().origin.x, -view_.bounds().origin.y);
    }
    return view_.convertTo(rect.offsetBy(view_.bounds().origin.x, view_.bounds().origin.y), nullptr);
}

std::optional<std::size_t> TextViewAccessibility::offsetAt(CGPoint windowPoint) const
{
    auto point = view_.convertFrom(windowPoint, nullptr);
    if (!view_.bounds().contains(point))
        return std::nullopt;
    return fromUtf8(view_.closestPosition(point));
}

void TextViewAccessibility::scrollTo(Range range)
{
    view_.scrollRangeToVisible({toUtf8(range.start), toUtf8(range.end)});
}

} // namespace platform
