// SPDX-License-Identifier: MIT
// Where the characters of a laid out paragraph are: carets, hits, selections.
#include "platform/graphics/TextLayout_p.h"

#include <algorithm>

namespace platform {

namespace {

constexpr CGFloat touching = 0.05; // the shaping library counts in 1/64 of a point

// Joins pieces that touch, from left to right.
std::vector<CGRect> joined(std::vector<CGRect> pieces)
{
    std::sort(pieces.begin(), pieces.end(),
              [](const CGRect& a, const CGRect& b) { return a.minX() < b.minX(); });
    std::vector<CGRect> result;
    for (auto& piece : pieces) {
        if (!result.empty() && piece.minX() <= result.back().maxX() + touching)
            result.back() = result.back().unionWith(piece);
        else
            result.push_back(piece);
    }
    return result;
}

} // namespace

const std::vector<CharacterEdges>& TextLayout::Shaped::edgesOf(std::size_t index) const
{
    auto& result = edges[index];
    if (result.empty())
        result = measureCharacters(layout, layout.lineAt(static_cast<int>(index)), isRightToLeft,
                                   [this](qsizetype position) { return byteOf(position); });
    return result;
}

// Where directions meet, the caret stands at the character that follows the base direction, and at the ends
// of a line at the line's ends, so that it moves where a reader of the base direction expects it.
CGFloat TextLayout::Shaped::caretX(std::size_t index, qsizetype position) const
{
    if (isPlainlyOrdered() || edgesOf(index).empty())
        return layout.lineAt(static_cast<int>(index)).cursorToX(static_cast<int>(position));
    auto& all = edgesOf(index);
    auto leading = [](const CharacterEdges& edge) { return edge.isRightToLeft ? edge.right : edge.left; };
    auto trailing = [](const CharacterEdges& edge) { return edge.isRightToLeft ? edge.left : edge.right; };
    auto after = std::lower_bound(
        all.begin(), all.end(), byteOf(position),
        [](const CharacterEdges& edge, std::size_t byte) { return edge.bytes.begin < byte; });
    if (after == all.begin() || after == all.end()) {
        auto isLeft = (after == all.begin()) != isRightToLeft;
        auto x = isLeft ? unlimitedWidth : -unlimitedWidth;
        for (auto& edge : all)
            x = isLeft ? std::min(x, edge.left) : std::max(x, edge.right);
        return x;
    }
    auto& before = *std::prev(after);
    auto standsBefore = before.isRightToLeft == isRightToLeft && after->isRightToLeft != isRightToLeft;
    return standsBefore ? trailing(before) : leading(*after);
}

// The library's own search gives no place after the last character of a line that another one follows.
std::size_t TextLayout::Shaped::offsetInPlainLine(std::size_t index, CGFloat x) const
{
    auto line = layout.lineAt(static_cast<int>(index));
    auto end = line.textStart() + line.textLength();
    auto low = line.textStart();
    auto high = end;
    while (low < high) {
        auto middle = low + (high - low + 1) / 2;
        if (line.cursorToX(middle) <= x)
            low = middle;
        else
            high = middle - 1;
    }
    auto before = static_cast<int>(std::max(validPosition(low), qsizetype(line.textStart())));
    auto after = std::min(layout.nextCursorPosition(before), end);
    auto isNearerAfter = line.cursorToX(after) - x < x - line.cursorToX(before);
    return byteOf(isNearerAfter ? after : before);
}

// The side of the character under `x`. On the border of two characters that lead to different offsets, the
// offset whose caret stands there; beside all characters, where the line begins or ends.
std::size_t TextLayout::Shaped::offsetInMixedLine(std::size_t index, CGFloat x) const
{
    auto best = lines[index].bytes.begin;
    auto bestDistance = unlimitedWidth;
    auto bestError = unlimitedWidth;
    auto left = unlimitedWidth;
    auto right = -unlimitedWidth;
    for (auto& edge : edgesOf(index)) {
        left = std::min(left, edge.left);
        right = std::max(right, edge.right);
    }
    if (x < left + touching || x > right - touching)
        return (x < left + touching) == isRightToLeft ? lines[index].bytes.end : lines[index].bytes.begin;
    for (auto& edge : edgesOf(index)) {
        auto distance = std::max({edge.left - x, x - edge.right, 0.0});
        if (distance > bestDistance + touching)
            continue;
        auto isLeftHalf = x < (edge.left + edge.right) / 2;
        auto offset = isLeftHalf == edge.isRightToLeft ? edge.bytes.end : edge.bytes.begin;
        auto error = std::abs(caretX(index, positionOf(offset)) - x);
        if (distance < bestDistance - touching || error < bestError) {
            best = offset;
            bestDistance = distance;
            bestError = error;
        }
    }
    return best;
}

std::size_t TextLayout::lineOf(std::size_t offset, CaretAffinity affinity) const
{
    auto& all = lines();
    auto after =
        std::upper_bound(all.begin(), all.end(), offset,
                         [](std::size_t value, const TextLine& line) { return value < line.bytes.begin; });
    auto index = static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - all.begin() - 1, 0));
    if (affinity == CaretAffinity::upstream && index > 0 && all[index].bytes.begin == offset)
        --index;
    return index;
}

std::size_t TextLayout::lineAt(CGFloat y) const
{
    auto& all = lines();
    auto after = std::upper_bound(all.begin(), all.end(), y,
                                  [](CGFloat value, const TextLine& line) { return value < line.y; });
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - all.begin() - 1, 0));
}

CGRect TextLayout::caretRect(std::size_t offset, CaretAffinity affinity) const
{
    auto position = shaped_->positionOf(offset);
    auto index = lineOf(shaped_->byteOf(position), affinity);
    auto& line = lines()[index];
    return CGRect::make(shaped_->caretX(index, position), line.y, 0, line.height);
}

TextHit TextLayout::hit(CGPoint point) const
{
    auto index = lineAt(point.y);
    auto offset = shaped_->isPlainlyOrdered() ? shaped_->offsetInPlainLine(index, point.x)
                                              : shaped_->offsetInMixedLine(index, point.x);
    auto isAfterBreak = index + 1 < lines().size() && offset == lines()[index].bytes.end;
    return {offset, isAfterBreak ? CaretAffinity::upstream : CaretAffinity::downstream};
}

std::vector<CGRect> TextLayout::selectionRects(ByteRange range) const
{
    auto end = std::min(range.end, shaped_->text.byteCount());
    std::vector<CGRect> result;
    if (range.begin >= end)
        return result;
    for (auto index = lineOf(range.begin); index < lines().size() && lines()[index].bytes.begin < end;
         ++index) {
        auto& line = lines()[index];
        std::vector<CGRect> pieces;
        if (shaped_->isPlainlyOrdered()) {
            auto qLine = shaped_->layout.lineAt(static_cast<int>(index));
            auto from = shaped_->positionOf(std::max(range.begin, line.bytes.begin));
            // An end inside a character takes the whole of it.
            auto to = shaped_->positionOf(end);
            if (shaped_->byteOf(to) < end)
                to = shaped_->layout.nextCursorPosition(static_cast<int>(to));
            to = std::min(to, qsizetype(qLine.textStart() + qLine.textLength()));
            auto left = qLine.cursorToX(static_cast<int>(from));
            auto right = qLine.cursorToX(static_cast<int>(to));
            pieces.push_back(CGRect::make(left, line.y, right - left, line.height));
        } else {
            for (auto& edge : shaped_->edgesOf(index)) {
                if (edge.bytes.begin < end && edge.bytes.end > range.begin)
                    pieces.push_back(CGRect::make(edge.left, line.y, edge.right - edge.left, line.height));
            }
        }
        for (auto& piece : joined(std::move(pieces)))
            result.push_back(piece);
    }
    return result;
}

std::optional<std::size_t> TextLayout::offsetLeftOf(std::size_t offset) const
{
    auto position = static_cast<int>(shaped_->positionOf(offset));
    auto left = shaped_->layout.leftCursorPosition(position);
    return left == position ? std::nullopt : std::optional(shaped_->byteOf(left));
}

std::optional<std::size_t> TextLayout::offsetRightOf(std::size_t offset) const
{
    auto position = static_cast<int>(shaped_->positionOf(offset));
    auto right = shaped_->layout.rightCursorPosition(position);
    return right == position ? std::nullopt : std::optional(shaped_->byteOf(right));
}

} // namespace platform
