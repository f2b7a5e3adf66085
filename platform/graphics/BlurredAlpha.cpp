// SPDX-License-Identifier: MIT
#include "platform/graphics/BlurredAlpha_p.h"

#include "platform/graphics/CGContext_p.h"
#include "platform/graphics/UIImage_p.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace platform {

namespace {

// Three boxes after each other come near to a bell of the deviation; their widths are odd.
std::array<int, 3> boxRadii(double deviation)
{
    auto ideal = std::sqrt(4 * deviation * deviation + 1);
    auto lower = std::max(1, (static_cast<int>(ideal) - 1) / 2 * 2 + 1);
    auto narrow = std::clamp(
        static_cast<int>(std::lround((12 * deviation * deviation - 3.0 * lower * lower - 12.0 * lower - 9)
                                     / (-4.0 * lower - 4))),
        0, 3);
    std::array<int, 3> radii{};
    for (int i = 0; i < 3; ++i)
        radii[static_cast<std::size_t>(i)] = ((i < narrow ? lower : lower + 2) - 1) / 2;
    return radii;
}

// The mean of 2 radius + 1 values around each of `count`, `step` bytes apart; beyond the ends there is nothing.
void boxBlur(unsigned char* values, int count, std::ptrdiff_t step, int radius,
             std::vector<unsigned char>& line)
{
    line.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        line[static_cast<std::size_t>(i)] = values[i * step];
    unsigned sum = 0;
    for (int i = 0; i < std::min(radius, count); ++i)
        sum += line[static_cast<std::size_t>(i)];
    auto width = static_cast<unsigned>(2 * radius + 1);
    auto reciprocal = ((1U << 16) + width / 2) / width;
    for (int i = 0; i < count; ++i) {
        if (i + radius < count)
            sum += line[static_cast<std::size_t>(i + radius)];
        if (i - radius > 0)
            sum -= line[static_cast<std::size_t>(i - radius - 1)];
        values[i * step] = static_cast<unsigned char>(std::min((sum * reciprocal + (1U << 15)) >> 16, 255U));
    }
}

} // namespace

QImage blurredAlpha(const QImage& image, double deviation, const ColorComponents& color)
{
    auto alpha = image.convertToFormat(QImage::Format_Alpha8);
    std::vector<unsigned char> line;
    for (auto radius : boxRadii(deviation)) {
        if (radius == 0)
            continue;
        for (int y = 0; y < alpha.height(); ++y)
            boxBlur(alpha.scanLine(y), alpha.width(), 1, radius, line);
        for (int x = 0; x < alpha.width(); ++x)
            boxBlur(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), radius, line);
    }
    QImage result(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    auto byte = [](double value) { return static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255)); };
    auto opaque = qRgba(byte(color.red), byte(color.green), byte(color.blue), 255);
    std::array<QRgb, 256> table{};
    for (int level = 0; level < 256; ++level)
        table[static_cast<std::size_t>(level)] =
            qPremultiply(qRgba(qRed(opaque), qGreen(opaque), qBlue(opaque), byte(color.alpha * level / 255)));
    for (int y = 0; y < alpha.height(); ++y) {
        auto* from = alpha.constScanLine(y);
        auto* to = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < alpha.width(); ++x)
            to[x] = table[from[x]];
    }
    return result;
}

void drawPart(CGContext& context, const UIImage& image, const CGRect& part, const CGRect& rect)
{
    auto scale = image.scale();
    painterOf(context).drawImage(
        QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()), qImage(image),
        QRectF(part.minX() * scale, part.minY() * scale, part.width() * scale, part.height() * scale));
}

} // namespace platform
