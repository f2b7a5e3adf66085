// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QImage>
#include <QtGui/QRgb>

#include <cstddef>
#include <cstdint>

namespace platform {

// Rows of premultiplied pixels, several at a time.

// The four channels of a pixel are multiplied by the same, of 255.
using PixelFactor = std::uint64_t;
constexpr PixelFactor pixelFactor(std::uint8_t of255)
{
    return of255 * PixelFactor(0x0001'0001'0001'0001);
}

void multiplyPixels(QRgb* pixels, const PixelFactor* factors, std::size_t count);
// Paints one row over another, as the library blends.
void blendPixels(QRgb* below, const QRgb* above, std::size_t count);

// For writing into a picture that a painter, at rest, is painting: asking the picture for them would part it from its painter.
inline QRgb* pixelsOf(const QImage& image, int y)
{
    return const_cast<QRgb*>(reinterpret_cast<const QRgb*>(image.constScanLine(y)));
}

} // namespace platform
