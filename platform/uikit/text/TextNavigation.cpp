// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextNavigation.h"

#include <algorithm>

namespace platform {

namespace {

// The caret in its fragment.
struct Caret {
    const TextBuffer& text;
    const TextViewport& viewport;
    TextSelection selection;
    std::shared_ptr<const ShapedFragment> shaped;

    const TextLayout& layout() const { return shaped->layout; }
    const TextFragment& fragment() const { return shaped->fragment; }
    std::size_t inside() const { return shaped->inside(selection.head); }
    std::size_t row() const { return layout().lineOf(inside(), selection.affinity); }
    CGRect rect() const { return layout().caretRect(inside(), selection.affinity); }
    CGFloat x() const { return selection.preferredX.value_or(rect().minX()); }
    // Logically backwards is to the left in lines that begin there.
    bool isBackwards(bool toTheLeft) const { return toTheLeft != layout().isRightToLeft(); }
};

// At a line's edge, the caret goes to the line before or after.
Utf8Offset acrossEdge(const Caret& caret, bool toTheLeft)
{
    auto head = caret.selection.head;
    return caret.isBackwards(toTheLeft) ? caret.text.previousCharacter(head) : caret.text.nextCharacter(head);
}

TextSelection besides(const Caret& caret, bool toTheLeft)
{
    auto& layout = caret.layout();
    auto next = toTheLeft ? layout.offsetLeftOf(caret.inside()) : layout.offsetRightOf(caret.inside());
    return TextSelection::caret(next ? caret.shaped->outside(*next) : acrossEdge(caret, toTheLeft));
}

TextSelection byWord(const Caret& caret, bool toTheLeft)
{
    auto head = caret.selection.head;
    return TextSelection::caret(caret.isBackwards(toTheLeft) ? caret.text.previousWordStart(head)
                                                             : caret.text.nextWordEnd(head));
}

TextSelection inRow(const ShapedFragment& shaped, CGFloat x, CGFloat y)
{
    auto hit = shaped.layout.hit({x, y});
    auto selection = TextSelection::caret(shaped.outside(hit.offset), hit.affinity);
    selection.preferredX = x;
    return selection;
}

TextSelection byRow(const Caret& caret, bool upwards)
{
    auto& lines = caret.layout().lines();
    auto row = caret.row();
    if (upwards ? row > 0 : row + 1 < lines.size()) {
        auto& line = lines[upwards ? row - 1 : row + 1];
        return inRow(*caret.shaped, caret.x(), line.y + line.height / 2);
    }
    auto next =
        upwards ? fragmentBefore(caret.text, caret.fragment()) : fragmentAfter(caret.text, caret.fragment());
    if (!next)
        return TextSelection::caret(upwards ? Utf8Offset{0} : caret.text.end());
    auto shaped = caret.viewport.shapedAt(next->range.start);
    auto& line = upwards ? shaped->layout.lines().back() : shaped->layout.lines().front();
    return inRow(*shaped, caret.x(), line.y + line.height / 2);
}

TextSelection byPage(const Caret& caret, bool upwards)
{
    auto distance =
        std::max(caret.viewport.size().height - caret.viewport.lineHeight(), caret.viewport.lineHeight());
    auto from = caret.rect().midY();
    auto place = caret.viewport.moved({caret.shaped, from}, upwards ? -distance : distance);
    // On the text's first and last row there is no further page: the caret goes to the very end.
    auto& edges = place.shaped->fragment;
    bool isAtEnd = upwards ? edges.range.start == Utf8Offset{0} && place.y <= 0
                           : edges.range.end == caret.text.end() && place.y >= place.shaped->height();
    if (isAtEnd)
        return TextSelection::caret(upwards ? Utf8Offset{0} : caret.text.end());
    return inRow(*place.shaped, caret.x(), place.y);
}

TextSelection toRowEdge(const Caret& caret, bool toStart)
{
    auto& layout = caret.layout();
    auto& line = layout.lines()[caret.row()];
    if (toStart)
        return TextSelection::caret(caret.shaped->outside(line.bytes.begin));
    bool isLast = caret.row() + 1 == layout.lines().size();
    return TextSelection::caret(caret.shaped->outside(line.bytes.end),
                                isLast ? CaretAffinity::downstream : CaretAffinity::upstream);
}

TextSelection target(const Caret& caret, TextMovement movement)
{
    auto head = caret.selection.head;
    switch (movement) {
    case TextMovement::left:
    case TextMovement::right:
        return besides(caret, movement == TextMovement::left);
    case TextMovement::wordLeft:
    case TextMovement::wordRight:
        return byWord(caret, movement == TextMovement::wordLeft);
    case TextMovement::up:
    case TextMovement::down:
        return byRow(caret, movement == TextMovement::up);
    case TextMovement::pageUp:
    case TextMovement::pageDown:
        return byPage(caret, movement == TextMovement::pageUp);
    case TextMovement::rowStart:
    case TextMovement::rowEnd:
        return toRowEdge(caret, movement == TextMovement::rowStart);
    case TextMovement::lineStart:
        return TextSelection::caret(caret.text.lineStart(caret.text.lineContaining(head)));
    case TextMovement::lineEnd: {
        auto line = caret.text.lineRange(caret.text.lineContaining(head));
        return TextSelection::caret(line.end - caret.text.lineEndSize(line));
    }
    case TextMovement::documentStart:
        return TextSelection::caret({0});
    case TextMovement::documentEnd:
        return TextSelection::caret(caret.text.end());
    }
    return caret.selection;
}

} // namespace

TextSelection moved(const TextBuffer& text, const TextViewport& viewport, const TextSelection& selection,
                    TextMovement movement, Extend extend)
{
    Caret caret{text, viewport, selection, viewport.shapedAt(selection.head)};
    bool isSideways = movement == TextMovement::left || movement == TextMovement::right;
    if (extend == Extend::no && isSideways && !selection.isEmpty()) {
        bool toStart = caret.isBackwards(movement == TextMovement::left);
        return TextSelection::caret(toStart ? selection.range().start : selection.range().end);
    }
    auto result = target(caret, movement);
    if (extend == Extend::yes)
        result.anchor = selection.anchor;
    return result;
}

TextRange wordAround(const TextBuffer& text, Utf8Offset offset)
{
    auto line = lineAround(text, offset);
    line.end = line.end - text.lineEndSize(line);
    if (line.isEmpty())
        return line;
    // Behind the last word of a line, that word is meant.
    auto inside = offset < line.end ? offset : text.previousCharacter(line.end);
    return text.wordRange(inside).intersection(line);
}

TextRange lineAround(const TextBuffer& text, Utf8Offset offset)
{
    return text.lineRange(text.lineContaining(offset));
}

} // namespace platform
