// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/TextLayout.h"
#include "platform/graphics/Utf16Text_p.h"

#include <QtGui/QTextLayout>

namespace platform {

// A paragraph as the shaping library has it. Offsets are UTF-16 here; `text` has the way to bytes.
struct TextLayout::Shaped {
    // The edges of one line's characters, in the order of the text.
    struct Edges {
        std::size_t begin; // bytes
        std::size_t end;
        CGFloat left;
        CGFloat right;
    };

    Shaped(std::string_view utf8, const TextStyle& style, CGFloat width);

    void makeLines(CGFloat width);
    void truncate(CGFloat width);
    void placeLines(CGFloat width);

    // A truncated text ends at `cut`, where the ellipsis stands for the rest.
    bool isTruncated() const { return cut >= 0; }
    std::size_t byteOf(qsizetype position) const;
    qsizetype positionOf(std::size_t byte) const;
    // The nearest place between two characters, at or before.
    qsizetype validPosition(qsizetype position) const;
    const std::vector<Edges>& edgesOf(std::size_t line) const;

    TextStyle style;
    Utf16Text text;
    QTextLayout layout;
    qsizetype cut = -1;
    bool isRightToLeft = false;
    std::vector<TextLine> lines;
    CGSize size;
    mutable std::vector<std::vector<Edges>> edges; // of lines of mixed direction, once asked for
};

} // namespace platform
