// SPDX-License-Identifier: MIT
#include "platform/uikit/text/PieceTable.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>

namespace platform {

PieceTable::PieceTable(std::vector<TextPiece> pieces)
    : pieces_(std::move(pieces))
{
}

const PieceTable::Sums& PieceTable::sums(std::size_t piece) const
{
    if (validSums_ <= pieces_.size())
        countSums();
    return sums_[piece];
}

void PieceTable::countSums() const
{
    sums_.resize(pieces_.size() + 1);
    for (; validSums_ <= pieces_.size(); ++validSums_) {
        auto& piece = pieces_[validSums_ - 1];
        auto& before = sums_[validSums_ - 1];
        sums_[validSums_] = {before.bytes + piece.size(),
                             before.lineEnds + piece.lineEnds() - cutsLineEnd(validSums_ - 1)};
    }
}

PieceTable::Position PieceTable::find(Utf8Offset offset) const
{
    auto total = sums(pieces_.size()).bytes;
    precondition(offset.value >= 0 && offset.value <= total, "an offset is inside the text");
    auto after = std::upper_bound(sums_.begin(), sums_.end(), offset.value,
                                  [](std::int64_t value, const Sums& sum) { return value < sum.bytes; });
    auto piece = static_cast<std::size_t>(after - sums_.begin()) - 1;
    return {piece, static_cast<std::size_t>(offset.value - sums_[piece].bytes)};
}

std::size_t PieceTable::pieceOfLineEnd(std::int64_t ordinal) const
{
    precondition(ordinal >= 1 && ordinal <= sums(pieces_.size()).lineEnds, "a line end is inside the text");
    auto at = std::lower_bound(sums_.begin(), sums_.end(), ordinal,
                               [](const Sums& sum, std::int64_t value) { return sum.lineEnds < value; });
    return static_cast<std::size_t>(at - sums_.begin()) - 1;
}

std::int64_t PieceTable::utf16UnitsBefore(std::size_t piece) const
{
    utf16Sums_.resize(pieces_.size() + 1);
    for (; validUtf16Sums_ <= piece; ++validUtf16Sums_)
        utf16Sums_[validUtf16Sums_] =
            utf16Sums_[validUtf16Sums_ - 1] + pieces_[validUtf16Sums_ - 1].utf16Units();
    return utf16Sums_[piece];
}

std::size_t PieceTable::pieceOfUtf16Unit(std::int64_t unit) const
{
    if (unit >= utf16UnitsBefore(pieces_.size()))
        return pieces_.size();
    auto after = std::upper_bound(utf16Sums_.begin(), utf16Sums_.end(), unit);
    return static_cast<std::size_t>(after - utf16Sums_.begin()) - 1;
}

std::size_t PieceTable::cut(Utf8Offset offset)
{
    auto [piece, inside] = find(offset);
    if (inside == 0)
        return piece;
    auto bytes = pieces_[piece].bytes();
    TextPiece parts[] = {TextPiece(bytes.substr(0, inside)), TextPiece(bytes.substr(inside))};
    pieces_[piece] = parts[0];
    pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(piece) + 1, parts[1]);
    invalidateSums(piece);
    return piece + 1;
}

std::vector<TextPiece> PieceTable::splice(TextRange range, std::span<const TextPiece> pieces)
{
    // Cutting at the start moves the pieces behind it.
    auto last = cut(range.end);
    auto count = pieces_.size();
    auto first = cut(range.start);
    last += pieces_.size() - count;

    auto from = pieces_.begin() + static_cast<std::ptrdiff_t>(first);
    auto to = pieces_.begin() + static_cast<std::ptrdiff_t>(last);
    std::vector<TextPiece> removed(from, to);
    auto common = std::min(removed.size(), pieces.size());
    std::copy_n(pieces.begin(), common, from);
    if (pieces.size() < removed.size())
        pieces_.erase(from + static_cast<std::ptrdiff_t>(common), to);
    else
        pieces_.insert(to, pieces.begin() + static_cast<std::ptrdiff_t>(common), pieces.end());
    invalidateSums(first);
    return removed;
}

void PieceTable::join(std::size_t border)
{
    if (border == 0 || border >= pieces_.size())
        return;
    auto before = pieces_[border - 1].bytes();
    auto after = pieces_[border].bytes();
    auto size = before.size() + after.size();
    if (before.data() + before.size() != after.data() || size > TextPiece::sizeLimit)
        return;
    pieces_[border - 1] = TextPiece({before.data(), size});
    pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(border));
    invalidateSums(border - 1);
}

void PieceTable::invalidateSums(std::size_t fromPiece)
{
    validSums_ = std::min(validSums_, fromPiece + 1);
    validUtf16Sums_ = std::min(validUtf16Sums_, fromPiece + 1);
}

} // namespace platform
