// SPDX-License-Identifier: MIT
#include "platform/graphics/UIImage_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContext_p.h"
#include "platform/graphics/GraphicsRuntime.h"

#include <QtGui/QPainter>

#include <cstring>

namespace platform {

UIImage::UIImage(std::shared_ptr<const Bitmap> bitmap, CGFloat scale)
    : bitmap_(std::move(bitmap))
    , scale_(scale > 0 && std::isfinite(scale) ? scale : 1)
{
}

UIImage UIImage::fromPixels(std::span<const std::byte> rgba, int width, int height, CGFloat scale)
{
    precondition(width >= 0 && height >= 0
                     && rgba.size() == 4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                 "UIImage::fromPixels needs four bytes a pixel");
    if (rgba.empty())
        return {};
    QImage image(width, height, QImage::Format_RGBA8888);
    precondition(!image.isNull(), "no memory for a picture");
    auto rowBytes = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(image.scanLine(y), rgba.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
    return imageFrom(std::move(image), scale);
}

CGSize UIImage::size() const
{
    return bitmap_ ? CGSize{bitmap_->size().width() / scale_, bitmap_->size().height() / scale_} : CGSize();
}

int UIImage::pixelWidth() const
{
    return bitmap_ ? bitmap_->image().width() : 0;
}

int UIImage::pixelHeight() const
{
    return bitmap_ ? bitmap_->image().height() : 0;
}

UIColor UIImage::pixel(int x, int y) const
{
    precondition(x >= 0 && y >= 0 && x < pixelWidth() && y < pixelHeight(), "pixel outside of the picture");
    auto color = bitmap_->image().pixelColor(x, y);
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

UIImage UIImage::withRenderingMode(RenderingMode mode) const
{
    auto copy = *this;
    copy.renderingMode_ = mode;
    return copy;
}

UIImage UIImage::asSymbol() const
{
    auto copy = *this;
    copy.isSymbol_ = true;
    return copy;
}

bool operator==(const UIImage& a, const UIImage& b)
{
    if (a.scale_ != b.scale_ || a.renderingMode_ != b.renderingMode_ || a.isSymbol_ != b.isSymbol_)
        return false;
    if (a.bitmap_ == b.bitmap_)
        return true;
    auto isComparable = [](const UIImage& each) { return each.bitmap_ && !each.bitmap_->isPending(); };
    return isComparable(a) && isComparable(b) && a.bitmap_->image() == b.bitmap_->image();
}

QImage qImage(const UIImage& image)
{
    return image.bitmap() ? image.bitmap()->image() : QImage();
}

UIImage imageFrom(QImage image, CGFloat scale)
{
    if (image.isNull())
        return {};
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
    return UIImage(std::make_shared<const Bitmap>(std::move(image)), scale);
}

Result<UIImage> makeImage(CGSize size, CGFloat scale, const std::function<void(CGContext&)>& draw,
                          ColorAppearance appearance)
{
    auto width = std::ceil(size.width * scale - 1e-6);
    auto height = std::ceil(size.height * scale - 1e-6);
    // Written so that what is not a number fails.
    if (!(scale > 0 && width >= 1 && height >= 1 && width <= 32'000 && height <= 32'000
          && width * height <= static_cast<double>(UIImage::maximumPixelCount)))
        return failure(NSCocoaError::fileReadTooLarge,
                       {{std::string(NSLocalizedFailureReasonErrorKey),
                         "The picture would have no pixels or too many."}});
    startGraphics(DisplayMode::offscreen);
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return failure(
            NSCocoaError::fileReadTooLarge,
            {{std::string(NSLocalizedFailureReasonErrorKey), "There is no memory for the picture."}});
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(scale);
    {
        QPainter painter(&image);
        auto context = contextOver(painter, appearance);
        draw(context);
    }
    return imageFrom(std::move(image), scale);
}

} // namespace platform
