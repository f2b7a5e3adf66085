// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/TextOffsets.h"
#include "platform/uikit/text/TextPiece.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace platform {

// A text as a sequence of pieces, with running sums of bytes and line ends, so that an offset or a line is
// found by bisection and one walk over a piece. A gigabyte is 65,536 pieces. An edit replaces pieces and makes
// the sums behind it stale; the next question counts them again. Owns no bytes. Main thread only.
class PieceTable {
public:
    struct Position {
        std::size_t piece = 0;  // size() at the end of the text
        std::size_t offset = 0; // inside the piece
    };

    PieceTable() = default;
    explicit PieceTable(std::vector<TextPiece> pieces);

    std::size_t size() const { return pieces_.size(); }
    const TextPiece& operator[](std::size_t piece) const { return pieces_[piece]; }
    Utf8Offset end() const { return start(pieces_.size()); }
    // Also of the place after the last piece.
    Utf8Offset start(std::size_t piece) const { return {sums(piece).bytes}; }
    // The piece that holds the byte at `offset`. Requires: 0 <= offset <= end().
    Position find(Utf8Offset offset) const;

    // A line end cut by a border counts once, in the piece before it.
    std::int64_t lineEndsBefore(std::size_t piece) const { return sums(piece).lineEnds; }
    bool cutsLineEnd(std::size_t border) const
    {
        return border > 0 && border < pieces_.size() && pieces_[border - 1].endsWithReturn()
            && pieces_[border].startsWithLineFeed();
    }
    // The last piece before which fewer than `ordinal` line ends are complete. Requires: it exists.
    std::size_t pieceOfLineEnd(std::int64_t ordinal) const;

    // UTF-16 units before the piece. The first question counts all pieces that nobody has counted.
    std::int64_t utf16UnitsBefore(std::size_t piece) const;
    std::size_t pieceOfUtf16Unit(std::int64_t unit) const;

    // Puts `pieces` in the place of `range`; pieces at its edges are cut. Gives what was there.
    std::vector<TextPiece> splice(TextRange range, std::span<const TextPiece> pieces);
    // Makes one piece of the two at `border` when their bytes are neighbours and few enough, so that typing
    // does not leave a piece a letter.
    void join(std::size_t border);

private:
    struct Sums {
        std::int64_t bytes = 0;
        std::int64_t lineEnds = 0;
    };

    const Sums& sums(std::size_t piece) const;
    void countSums() const;
    std::size_t cut(Utf8Offset offset);
    void invalidateSums(std::size_t fromPiece);

    std::vector<TextPiece> pieces_;
    // Sums before each piece and after the last one; right up to the given count.
    mutable std::vector<Sums> sums_{Sums{}};
    mutable std::size_t validSums_ = 1;
    mutable std::vector<std::int64_t> utf16Sums_{0};
    mutable std::size_t validUtf16Sums_ = 1;
};

} // namespace platform
