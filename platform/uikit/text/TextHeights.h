// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/uikit/text/TextFragment.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace platform {

// How high the text is, and which part of it is at a given height, without shaping it: rows are computed from
// columns, and what was shaped is corrected to what it really takes. Serves the scroll bar and nothing that
// must be right to the point, for heights change as more becomes known. Small texts are measured at once; of
// large ones, each piece when somebody comes near, and until then a sample speaks for it.
// Owned by one text view's viewport. Main thread only.
class TextHeights {
public:
    // `text` outlives this.
    explicit TextHeights(const TextBuffer& text);

    // Points. Forgets everything about other widths, in time that does not depend on the text's size: the
    // next question costs one addition a piece.
    void setRows(std::int64_t columnsPerRow, CGFloat rowHeight);
    std::int64_t columnsPerRow() const { return columnsPerRow_; }
    // Forgets everything: it is another text.
    void handleNewText();
    // The text has changed from `at` on: `removed` bytes gave way to `inserted`.
    void handleEdit(Utf8Offset at, std::int64_t removed, std::int64_t inserted);

    CGFloat total() const;
    // Of all that stands above the fragment.
    CGFloat above(const TextFragment& fragment) const;
    struct Place {
        TextFragment fragment;
        CGFloat offset = 0; // below the fragment's top
    };
    // Where that height is reached; the ends of the text beyond them.
    Place at(CGFloat height) const;

    CGFloat estimate(const TextFragment& fragment) const;
    // What the fragment takes really. Remembered for some thousand fragments.
    void correct(const TextFragment& fragment, CGFloat height);

    std::size_t measuredPieces() const;

private:
    // What is known before each piece.
    struct Sums {
        double rows = 0;          // of the lines that have ended
        std::int64_t columns = 0; // of the line that has not
        bool operator==(const Sums&) const = default;
    };

    bool isSmall() const;
    bool isMeasured(std::size_t piece) const;
    void measure(std::size_t piece) const;
    std::int64_t countRows(std::size_t piece) const;
    Sums sumsAfter(std::size_t piece, Sums before) const;
    const Sums& sums(std::size_t piece) const;
    double rowsOfOpenLine(const Sums& sums) const;
    double rowsOfFirstLine(std::size_t piece, std::int64_t open, std::int64_t columns,
                           std::string_view line) const;
    void takeSample() const;
    // Rows above a place in a measured piece.
    double rowsAbove(std::size_t piece, std::size_t offset) const;
    CGFloat correctionBefore(Utf8Offset offset) const;
    Place placeInPiece(std::size_t piece, double row) const;

    const TextBuffer& text_;
    std::int64_t columnsPerRow_ = 80;
    CGFloat rowHeight_ = 1;
    mutable std::vector<Sums> sums_{Sums{}};
    mutable std::size_t validSums_ = 1;
    mutable double rowsPerLine_ = 1; // of pieces that nobody has measured
    mutable bool hasSample_ = false;
    // By the fragment's start: how much higher it is than its estimate. Only those that differ.
    std::map<Utf8Offset, CGFloat> corrections_;
};

} // namespace platform
