// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextFragment.h"

#include "platform/graphics/TextBoundaries.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>

namespace platform {

namespace {

constexpr std::int64_t lookBack = 512; // for a place to cut at
constexpr std::int64_t context = 1024; // that the boundary of a character is decided by
constexpr std::int64_t smallestRest = fragmentSize / 4;

// The number of cuts in a line.
std::int64_t cutsIn(TextRange line)
{
    return line.size() <= fragmentSize + smallestRest ? 0 : (line.size() - smallestRest) / fragmentSize;
}

// The `number`th cut, counted from 1.
Utf8Offset cutPlace(const TextBuffer& text, TextRange line, std::int64_t number)
{
    auto nominal = line.start + number * fragmentSize;
    TextRange around{std::max(line.start, nominal - context), std::min(line.end, nominal + context)};
    std::string scratch;
    auto bytes = text.view(around, scratch);
    auto middle = static_cast<std::size_t>(nominal - around.start);
    auto earliest = middle - static_cast<std::size_t>(lookBack);
    auto at = [&](std::size_t inside) { return around.start + static_cast<std::int64_t>(inside); };

    if (auto space = bytes.substr(0, middle).find_last_of(" \t"); space != bytes.npos && space >= earliest)
        return at(space + 1);
    if (auto character = graphemeStart(bytes, middle); character > earliest)
        return at(character);
    // One character of hundreds of marks: cut inside of it, but never inside of a code point.
    while (middle > earliest && isUtf8Continuation(bytes[middle]))
        --middle;
    return at(middle);
}

TextFragment fragmentOfLine(const TextBuffer& text, LineNumber number, TextRange line, std::int64_t part)
{
    auto cuts = cutsIn(line);
    TextFragment fragment{.line = number, .range = line};
    fragment.beginsLine = part == 0;
    fragment.endsLine = part == cuts;
    if (part > 0)
        fragment.range.start = cutPlace(text, line, part);
    if (part < cuts)
        fragment.range.end = cutPlace(text, line, part + 1);
    else
        fragment.lineEndSize = text.lineEndSize(fragment.range);
    return fragment;
}

// The line that begins at `start`: a short one is found by looking for its end right here.
TextRange lineFrom(const TextBuffer& text, LineNumber number, Utf8Offset start)
{
    auto chunk = text.chunkAt(start).substr(0, fragmentSize);
    auto end = findLineEnd(chunk, 0);
    if (end + 1 < chunk.size())
        return {start,
                start + static_cast<std::int64_t>(end)
                    + (chunk[end] == '\r' && chunk[end + 1] == '\n' ? 2 : 1)};
    return {start, text.lineRange(number).end};
}

} // namespace

TextFragment firstFragment(const TextBuffer& text)
{
    return fragmentOfLine(text, {0}, lineFrom(text, {0}, {0}), 0);
}

TextFragment lastFragment(const TextBuffer& text)
{
    return fragmentAt(text, text.end());
}

TextFragment fragmentAt(const TextBuffer& text, Utf8Offset offset)
{
    auto number = text.lineContaining(offset);
    auto line = lineFrom(text, number, text.lineStart(number));
    // A cut is at most `lookBack` before its multiple, so the part is this one or the next.
    auto part = std::min((offset - line.start) / fragmentSize, cutsIn(line));
    if (part < cutsIn(line) && offset >= cutPlace(text, line, part + 1))
        ++part;
    return fragmentOfLine(text, number, line, part);
}

std::optional<TextFragment> fragmentAfter(const TextBuffer& text, const TextFragment& fragment)
{
    if (!fragment.endsLine)
        return fragmentAt(text, fragment.range.end);
    if (fragment.lineEndSize == 0)
        return std::nullopt;
    auto number = fragment.line + 1;
    return fragmentOfLine(text, number, lineFrom(text, number, fragment.range.end), 0);
}

std::optional<TextFragment> fragmentBefore(const TextBuffer& text, const TextFragment& fragment)
{
    if (fragment.range.start == Utf8Offset{0})
        return std::nullopt;
    return fragmentAt(text, fragment.range.start - 1);
}

} // namespace platform
