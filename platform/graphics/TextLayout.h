// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/TextBoundaries.h"
#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIFont.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

class CGContext;

enum class TextAlignment {
    natural, // where the base direction begins
    left,
    center,
    right
};
enum class BaseDirection {
    automatic, // of the first strong character; left to right when there is none
    leftToRight,
    rightToLeft
};
enum class LineBreak {
    none,        // one line, however long
    word,        // between words; a word that is wider than the line is broken inside
    character,   // a line of a monospaced font has as many columns as fit, spaces included
    truncateTail // between words; what exceeds the last line ends in an ellipsis
};

struct TextStyle {
    UIFont font;
    std::optional<UIColor> color; // else the colour given to draw
    TextAlignment alignment = TextAlignment::natural;
    BaseDirection baseDirection = BaseDirection::automatic;
    LineBreak lineBreak = LineBreak::word;
    CGFloat tabStop = 0; // distance of tab stops in points; 0: eight columns of the font
    int maxLines = 0;    // 0: as many as it takes
    bool operator==(const TextStyle&) const = default;
};

// One line of a laid out paragraph. Coordinates are relative to the layout's top left corner.
struct TextLine {
    ByteRange bytes; // every byte of the paragraph is in one line
    CGFloat x = 0;   // where the ink's advance box begins
    CGFloat y = 0;
    CGFloat width = 0; // of that box, without the spaces that hang over the end
    CGFloat height = 0;
    CGFloat baseline = 0; // from the layout's top
};

// On which side of a line break the caret stands when both sides are the same offset.
enum class CaretAffinity { downstream, upstream };

struct TextHit {
    std::size_t offset = 0;
    CaretAffinity affinity = CaretAffinity::downstream;
    bool operator==(const TextHit&) const = default;
};

inline constexpr CGFloat unlimitedWidth = std::numeric_limits<CGFloat>::infinity();

// One shaped paragraph. Offsets are bytes of the UTF-8 text given; the text itself is not kept. Control
// characters, U+2028, U+2029, a byte-order mark and U+FFFC are drawn as visible signs, bytes that are not
// well-formed as U+FFFD; each keeps its offset. Costs about 20 us for a line of 60 characters and grows with
// the text: cut paragraphs of more than some thousand characters before. Main thread only.
class TextLayout {
public:
    // `width` in points; infinite, not a number or not positive: unlimited. Line ends inside the text (CR,
    // LF) are signs like other control characters. Requires: fewer than 2^30 bytes.
    TextLayout(std::string_view utf8, const TextStyle& style, CGFloat width = unlimitedWidth);
    TextLayout(TextLayout&&) noexcept;
    TextLayout& operator=(TextLayout&&) noexcept;
    ~TextLayout();

    // The widest line and the sum of heights. An empty text has one line's height.
    CGSize size() const;
    // Never empty.
    const std::vector<TextLine>& lines() const;
    bool isRightToLeft() const; // the base direction
    bool isTruncated() const;
    // Points from the top to the first and the last baseline.
    CGFloat firstBaseline() const { return lines().front().baseline; }
    CGFloat lastBaseline() const { return lines().back().baseline; }

    // The number of the line that holds `offset`, or the y coordinate; clamped.
    std::size_t lineOf(std::size_t offset, CaretAffinity affinity = CaretAffinity::downstream) const;
    std::size_t lineAt(CGFloat y) const;

    // The caret before the character at `offset`: as high as its line, of width zero. An offset inside a
    // character counts as its beginning; one past the end as the end.
    CGRect caretRect(std::size_t offset, CaretAffinity affinity = CaretAffinity::downstream) const;
    // The place between two characters that is nearest to `point`. Points above, below and beside are
    // clamped to the nearest line.
    TextHit hit(CGPoint point) const;
    std::size_t offsetAt(CGPoint point) const { return hit(point).offset; }
    // The places that the characters of `range` take: at least one rectangle a line that it meets, more
    // where directions mix. As high as the line; they do not overlap. Ends inside a character widen to it.
    std::vector<CGRect> selectionRects(ByteRange range) const;
    // One place between characters to the left or right on screen; nothing at the paragraph's edge.
    std::optional<std::size_t> offsetLeftOf(std::size_t offset) const;
    std::optional<std::size_t> offsetRightOf(std::size_t offset) const;

    // Paints at `origin`. Lines outside of the context's clip are skipped. `color` gives way to the style's.
    void draw(CGContext& context, CGPoint origin, const UIColor& color) const;

private:
    struct Shaped;
    std::unique_ptr<Shaped> shaped_;
};

} // namespace platform
