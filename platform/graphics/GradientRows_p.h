// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/gradientMask.h"
#include "platform/graphics/pixelRows_p.h"

#include <QtCore/QRect>

#include <optional>
#include <vector>

namespace platform {

// How opaque a mask is, row by row of an area of pixels.
//
// Along a line of the gradient it goes straight from stop to stop. One row looks like the one above, moved by a part of a
// pixel or a few: so where that pays, all rows are windows onto a few long ones, which are worked out for each part of a
// pixel that makes a difference. Elsewhere each row is worked out by itself.
class GradientRows {
public:
    // `toPixels`: from the context's present coordinates. What the mask leaves is multiplied by `alpha`.
    GradientRows(const MaskGradient& mask, const CGAffineTransform& toPixels, QRect pixels, double alpha = 1);

    std::size_t width() const { return width_; }
    // Whether all its rows are the same, as far as anybody can see.
    bool looksLike(const GradientRows& other) const;

    // Where a row begins: in which of the long rows, and at which pixel.
    struct Place {
        std::size_t phase = 0, offset = 0;
    };
    bool isTable() const { return phaseBits_ >= 0; }
    std::size_t phaseCount() const { return std::size_t(1) << phaseBits_; }
    const std::vector<PixelFactor>& phase(std::size_t number); // a long row
    // 0 is the area's first row. Requires: isTable()
    Place place(int y) const
    {
        auto number = std::size_t((shift_ * y - lowest_) * double(phaseCount()) + 0.5);
        return {number & (phaseCount() - 1), number >> phaseBits_};
    }
    // As many factors as the area is wide; until the next call.
    const PixelFactor* row(int y);

private:
    struct Knot {
        double place, alpha, slope = 0; // to the next one
        bool operator==(const Knot&) const = default;
    };
    double longest() const;
    void sample(double start, double step, std::vector<PixelFactor>& factors) const;

    std::vector<Knot> knots_;
    double first_ = 0, right_ = 0, down_ = 0; // the first pixel's place on the line, and what a pixel adds
    std::size_t width_;
    int height_;
    double shift_ = 0, lowest_ = 0; // pixels
    int phaseBits_ = -1;            // as many phases as that power of two; less than 0: there is no table
    std::vector<std::vector<PixelFactor>> phases_; // each when it is needed
    std::vector<PixelFactor> row_;
    int rowNumber_ = -1;
};

// The rows of one colour under the mask, and over a ground of one colour where there is one.
class MaskedColor {
public:
    MaskedColor(QRgb premultiplied, std::optional<QRgb> ground)
        : color_(premultiplied)
        , ground_(ground)
    {
    }
    // As many pixels as the area is wide; until the next call. `rows` is the same at each call.
    const QRgb* row(GradientRows& rows, int y);

private:
    void paint(std::vector<QRgb>& pixels, const PixelFactor* factors, std::size_t count) const;

    QRgb color_;
    std::optional<QRgb> ground_;
    std::vector<std::vector<QRgb>> phases_; // each when it is needed
    std::vector<QRgb> row_;
    int rowNumber_ = -1;
};

} // namespace platform
