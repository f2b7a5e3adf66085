// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/graphics/Utf16Text_p.h"

#include <QtGui/QTextLayout>

namespace platform {

// The place of one character on its line.
struct CharacterEdges {
    ByteRange bytes;
    CGFloat left = 0;
    CGFloat right = 0;
    bool isRightToLeft = false;
};

// The places of a line's characters, in the order of the text, measured by their glyphs. Grows with the square
// of the line's length.
std::vector<CharacterEdges> measureCharacters(const QTextLayout& layout, const QTextLine& line,
                                              bool baseIsRightToLeft,
                                              const std::function<std::size_t(qsizetype)>& byteOf);

// A paragraph as the shaping library has it. Offsets are UTF-16 here; `text` has the way to bytes.
struct TextLayout::Shaped {
    Shaped(std::string_view utf8, const TextStyle& style, CGFloat width);

    QString shapedCopy() const;
    void makeLines(CGFloat width);
    void truncate(CGFloat width);
    void placeLines(CGFloat width);

    // A truncated text ends at `cut`, where the ellipsis stands for the rest.
    bool isTruncated() const { return cut >= 0; }
    std::size_t byteOf(qsizetype position) const;
    qsizetype positionOf(std::size_t byte) const;
    // The nearest place between two characters, at or before.
    qsizetype validPosition(qsizetype position) const;
    // Whether all of the text runs from left to right, so that places grow with offsets.
    bool isPlainlyOrdered() const { return !text.hasRightToLeft() && !isRightToLeft; }
    CGFloat caretX(std::size_t line, qsizetype position) const;
    const std::vector<CharacterEdges>& edgesOf(std::size_t line) const;
    std::size_t offsetInPlainLine(std::size_t line, CGFloat x) const;
    std::size_t offsetInMixedLine(std::size_t line, CGFloat x) const;

    TextStyle style;
    Utf16Text text;
    QTextLayout layout;
    qsizetype cut = -1;
    bool isRightToLeft = false;
    std::vector<TextLine> lines;
    CGSize size;
    mutable std::vector<std::vector<CharacterEdges>> edges; // of lines of mixed direction, once asked for
};

} // namespace platform
