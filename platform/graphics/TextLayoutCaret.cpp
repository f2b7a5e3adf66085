// SPDX-License-Identifier: MIT
// Where the characters of a laid out paragraph are: carets, hits, selections.
#include "platform/graphics/TextLayout_p.h"

#include <algorithm>

namespace platform {

namespace {

// Joins pieces that touch, from left to right.
std::vector<CGRect> joined(std::vector<CGRect> pieces)
{
    constexpr CGFloat touching = 0.05; // the shaping library counts in 1/64 of a point
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
    auto x = shaped_->layout.lineAt(static_cast<int>(index)).cursorToX(static_cast<int>(position));
    return CGRect::make(x, line.y, 0, line.height);
}

TextHit TextLayout::hit(CGPoint point) const
{
    auto index = lineAt(point.y);
    auto line = shaped_->layout.lineAt(static_cast<int>(index));
    auto position = shaped_->validPosition(line.xToCursor(point.x, QTextLine::CursorBetweenCharacters));
    auto offset = shaped_->byteOf(position);
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
        if (!shaped_->text.hasRightToLeft() && !shaped_->isRightToLeft) {
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
                if (edge.begin < end && edge.end > range.begin)
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
