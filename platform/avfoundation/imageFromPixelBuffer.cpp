// SPDX-License-Identifier: MIT
#include "platform/avfoundation/imageFromPixelBuffer.h"

#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/PictureConverter_p.h"
#include "platform/graphics/UIImage_p.h"

namespace platform {

UIImage imageFromPixelBuffer(const std::shared_ptr<const CVPixelBuffer>& picture)
{
    if (!picture)
        return {};
    auto shown = picture;
    if (picture->pixelFormatType() != CVPixelFormatType::BGRA32) {
        PictureConverter converter{PixelBufferAttributes{}};
        auto converted = converter.convert(*picture->frame().picture);
        if (!converted)
            return {};
        shown = std::move(*converted);
    }
    // The image keeps the picture.
    auto* kept = new std::shared_ptr<const CVPixelBuffer>(shown);
    auto release = [](void* held) { delete static_cast<std::shared_ptr<const CVPixelBuffer>*>(held); };
    const auto& frame = *shown->frame().picture;
    return imageFrom(QImage(static_cast<const uchar*>(frame.data[0]), frame.width, frame.height,
                            frame.linesize[0], QImage::Format_RGB32, release, kept),
                     1);
}

} // namespace platform
