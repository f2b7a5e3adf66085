// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/GradientRows_p.h"

#include <QtCore/QPoint>
#include <QtGui/QImage>

#include <cstdint>
#include <optional>
#include <vector>

namespace platform {

// A premultiplied picture as runs of pixels: what is clear takes no room, and neither does much of one colour. It is a small
// part of the picture's size for what interfaces are made of, and painted under a gradient in one pass.
class RunPicture {
public:
    explicit RunPicture(const QImage& image);
    bool operator==(const RunPicture&) const = default;

    QSize size() const { return size_; }
    std::size_t byteCount() const;

    struct Target {
        const QImage* image; // premultiplied or opaque, 32 bits; its painter is at rest
        QPoint origin;       // of its first pixel, in the coordinates of all that follows
        // What all of `area` is taken for, whatever is there; none: what is there.
        std::optional<QRgb> ground;
    };
    // Paints, within `area`, the picture whose first pixel is at `place`, under a mask that is for `area`. Requires: `area` is
    // inside of the picture and of the target.
    void paint(const Target& target, QPoint place, QRect area, const GradientRows& mask) const;

private:
    struct Run {
        std::int32_t x, length;
        std::int32_t color;   // of colors_; less than 0: each pixel has its own
        std::uint32_t pixels; // the first one's place
        std::int32_t end() const { return x + length; }
        bool operator==(const Run&) const = default;
    };
    void encodeRow(const QRgb* pixels, int width);
    std::int32_t colorNumber(QRgb color);

    QSize size_;
    std::vector<std::uint32_t> rows_; // the first run of each, and at last their number
    std::vector<Run> runs_;           // from left to right
    std::vector<QRgb> colors_;
    std::vector<QRgb> pixels_;
};

} // namespace platform
