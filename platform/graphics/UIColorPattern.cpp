// SPDX-License-Identifier: MIT
// Colours that are a picture.
#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"
#include "platform/graphics/UIImage_p.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Each pixel weighs as much as it is opaque.
ColorComponents meanOf(const QImage& picture)
{
    if (picture.isNull())
        return {0, 0, 0, 0};
    auto image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    std::uint64_t red = 0, green = 0, blue = 0, alpha = 0;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            red += static_cast<unsigned>(qRed(line[x]));
            green += static_cast<unsigned>(qGreen(line[x]));
            blue += static_cast<unsigned>(qBlue(line[x]));
            alpha += static_cast<unsigned>(qAlpha(line[x]));
        }
    }
    if (alpha == 0)
        return {0, 0, 0, 0};
    auto weight = static_cast<double>(alpha);
    auto count = static_cast<double>(image.width()) * image.height();
    return {static_cast<double>(red) / weight, static_cast<double>(green) / weight,
            static_cast<double>(blue) / weight, weight / (255 * count)};
}

} // namespace

UIColor UIColor::pattern(const UIImage& image)
{
    UIColor color(meanOf(qImage(image)));
    color.pattern_ = std::make_shared<const UIImage>(image);
    return color;
}

UIColor UIColor::patternWithAlpha(double alpha) const
{
    auto source = qImage(*pattern_);
    if (source.isNull())
        return *this;
    QImage faded(source.size(), QImage::Format_ARGB32_Premultiplied);
    precondition(!faded.isNull(), "no memory for a picture");
    faded.fill(Qt::transparent);
    QPainter painter(&faded);
    painter.setOpacity(alpha > 0 ? std::min(alpha, 1.0) : 0);
    painter.drawImage(0, 0, source);
    painter.end();
    return pattern(imageFrom(std::move(faded), pattern_->scale()));
}

bool UIColor::isSamePattern(const UIColor& a, const UIColor& b)
{
    return a.pattern_ == b.pattern_ || (a.pattern_ && b.pattern_ && *a.pattern_ == *b.pattern_);
}

QBrush qBrush(const UIColor& color, ColorAppearance appearance)
{
    auto* image = color.patternImage();
    if (!image)
        return qColor(color, appearance);
    if (image->isEmpty())
        return Qt::NoBrush;
    QBrush brush(qImage(*image));
    brush.setTransform(QTransform::fromScale(1 / image->scale(), 1 / image->scale()));
    return brush;
}

} // namespace platform
