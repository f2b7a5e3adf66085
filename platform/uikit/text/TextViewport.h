// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/text/LineLayoutCache.h"
#include "platform/uikit/text/TextHeights.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

// A place in the text as it is laid out: a fragment and a height inside it.
struct TextPlace {
    std::shared_ptr<const ShapedFragment> shaped;
    CGFloat y = 0; // points below the fragment's top; 0 <= y < height unless at an end of the text
};

// A fragment that is on screen.
struct VisibleFragment {
    std::shared_ptr<const ShapedFragment> shaped;
    CGPoint origin; // of its layout, in the viewport
    CGRect frame(CGFloat width) const { return CGRect::make(origin.x, origin.y, width, shaped->height()); }
};

// The part of the text that is seen. What stands at the top edge is a fragment and a distance into it, never a
// distance from the top of the text: what becomes known of heights elsewhere cannot make the text jump.
// Coordinates are points from the viewport's top left corner. Owned by one text view. Main thread only.
class TextViewport {
public:
    // `text` outlives this.
    explicit TextViewport(const TextBuffer& text);

    // Each keeps the character at the top left edge where it is, as far as the text reaches.
    void setSize(CGSize size);
    void setInsets(UIEdgeInsets insets); // between the edges and the text, scrolled with it
    void setStyle(const TextStyle& style);
    // Pixels a point: what is seen begins on a whole pixel, so that letters stay sharp while they move.
    void setScale(CGFloat scale);
    void handleEdit(Utf8Offset at, std::int64_t removed, std::int64_t inserted);
    void handleNewText();

    CGSize size() const { return size_; }
    UIEdgeInsets insets() const { return insets_; }
    const TextStyle& style() const { return cache_.style(); }
    CGFloat textWidth() const { return cache_.width(); }
    CGFloat lineHeight() const { return lineHeight_; }

    // --- Scrolling --------------------------------------------------------------------------------
    // By points; positive shows what is further down. Gives what was used of it.
    CGFloat scrollBy(CGFloat distance);
    bool scrollToStart(); // true when that moved anything
    bool scrollToEnd();
    // To the part of the text that begins about there: 0 is the start, 1 shows the end.
    void scrollToFraction(double fraction);
    // The row of `offset` goes to the top edge, as far as the text reaches.
    bool scrollToTop(Utf8Offset offset);
    // Rows that do not wrap may be wider than the viewport: moves along those that are seen. Gives what was used.
    CGFloat scrollAlongRowsBy(CGFloat distance);
    CGFloat rowsOffset() const { return rowsOffset_; } // points; 0 where wrapped rows are
    struct RowsExtent {
        CGFloat least = 0; // the smallest offset; not positive
        CGFloat most = 0;  // the largest; not negative
    };
    RowsExtent rowsExtent() const;  // of what is seen
    double fraction() const;        // where the viewport is
    double visibleFraction() const; // of the text; 1 when all of it is seen
    bool isAtStart() const;
    bool isAtEnd() const;
    // Estimates, with the insets: how high the text is, and how much of it is above the top edge.
    CGFloat contentHeight() const;
    CGFloat contentOffset() const;
    // Moves as little as needed to show the caret at `offset`, and to the middle when that is far away.
    bool reveal(Utf8Offset offset, CaretAffinity affinity = CaretAffinity::downstream);

    // --- What is seen, and where things are ------------------------------------------------------
    const std::vector<VisibleFragment>& visible() const;
    // The visible text, cut fragments whole.
    TextRange visibleRange() const;
    struct Hit {
        Utf8Offset offset;
        CaretAffinity affinity = CaretAffinity::downstream;
        bool operator==(const Hit&) const = default;
    };
    // The place between characters nearest to `point`, clamped to what is seen.
    Hit hit(CGPoint point) const;
    // Nothing out of sight.
    std::optional<CGRect> caretRect(Utf8Offset offset,
                                    CaretAffinity affinity = CaretAffinity::downstream) const;
    // Of the visible part of `range`. A selected line end shows as some width after the line.
    std::vector<CGRect> selectionRects(TextRange range) const;

    // --- Anywhere in the text, seen or not -------------------------------------------------------
    std::shared_ptr<const ShapedFragment> shapedAt(Utf8Offset offset) const;
    // The place `distance` points further down, or up, through as many fragments as that takes; stops at the
    // ends of the text. Meant for some screens' worth at most.
    TextPlace moved(TextPlace place, CGFloat distance) const;

    std::int64_t shapingCount() const { return cache_.shapingCount(); }
    std::size_t measuredPieces() const { return heights_.measuredPieces(); }

private:
    // The character at the top edge, to be found again after everything has been laid out anew.
    struct Mark {
        Utf8Offset offset;
        double row = 0; // of a row's height, below the row's top; negative inside the top inset
        bool isAtStart = true;
    };

    std::shared_ptr<const ShapedFragment> shape(const TextFragment& fragment) const;
    std::shared_ptr<const ShapedFragment> after(const ShapedFragment& shaped) const;
    std::shared_ptr<const ShapedFragment> before(const ShapedFragment& shaped) const;
    TextPlace walk(TextPlace place) const;
    Mark mark() const;
    void restore(const Mark& mark);
    void layOutAnew();
    const TextPlace& anchor() const;
    bool setAnchor(TextPlace place);
    bool revealAlongRow(Utf8Offset offset, CaretAffinity affinity);
    TextPlace startAnchor() const;
    TextPlace endAnchor() const;
    TextPlace clamped(TextPlace place) const;
    TextPlace anchorAtHeight(CGFloat contentOffset) const;
    const VisibleFragment* find(Utf8Offset offset) const;

    const TextBuffer& text_;
    mutable LineLayoutCache cache_;
    mutable TextHeights heights_;
    CGSize size_;
    UIEdgeInsets insets_;
    CGFloat rowsOffset_ = 0;
    CGFloat lineHeight_ = 1;
    CGFloat scale_ = 1;

    // What is at the top edge; `y` is negative while the top inset is seen. Made at the first question.
    mutable TextPlace anchor_;
    // The top left character before the first of a row of resizes, so that these do not make it drift.
    std::optional<Mark> mark_;
    mutable std::vector<VisibleFragment> visible_;
    mutable bool isVisibleValid_ = false;
};

} // namespace platform
