// SPDX-License-Identifier: MIT
#include "platform/avfoundation/PictureConverter_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/FrameColors_p.h"

namespace platform {

namespace {

bool isFullRange(CVPixelFormatType type)
{
    return type == CVPixelFormatType::BGRA32 || type == CVPixelFormatType::planar420YpCbCr8FullRange
        || type == CVPixelFormatType::biPlanar420YpCbCr8FullRange;
}

} // namespace

Result<std::shared_ptr<const CVPixelBuffer>> PictureConverter::convert(const AVFrame& frame)
{
    const auto type = attributes_.kCVPixelBufferPixelFormatTypeKey;
    const int width = attributes_.kCVPixelBufferWidthKey.value_or(frame.width);
    const int height = attributes_.kCVPixelBufferHeightKey.value_or(frame.height);
    if (width == frame.width && height == frame.height && isFullRange(type) == isFullRange(frame))
        if (auto shared = makePixelBuffer(frame, type))
            return shared;
    auto target =
        CVPixelBuffer::make(width, height, type,
                            {.primaries = frame.color_primaries,
                             .transfer = frame.color_trc,
                             .matrix = type == CVPixelFormatType::BGRA32 ? AVCOL_SPC_RGB : matrixOf(frame)});
    if (!target)
        return failure(AVError::outOfMemory);
    TRY(prepare(frame, *target));
    auto& picture = *target->frame().picture;
    if (width == frame.width && height == frame.height)
        picture.sample_aspect_ratio = frame.sample_aspect_ratio;
    int rows =
        sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, picture.data, picture.linesize);
    if (rows < 0)
        return failure(mediaError(rows, MediaWork::decode));
    return target;
}

Result<void> PictureConverter::prepare(const AVFrame& frame, const CVPixelBuffer& target)
{
    auto& picture = *target.frame().picture;
    const bool scales = picture.width != frame.width || picture.height != frame.height;
    // The library asks for accuracy by name; without it chroma is a pixel off and shades are lost.
    const int quality = SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | (scales ? SWS_AREA : SWS_BILINEAR);
    scaler_.reset(sws_getCachedContext(
        scaler_.release(), frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), picture.width,
        picture.height, static_cast<AVPixelFormat>(picture.format), quality, nullptr, nullptr, nullptr));
    if (!scaler_)
        return failure(AVError::decodeFailed);
    const int* coefficients = sws_getCoefficients(matrixOf(frame));
    sws_setColorspaceDetails(scaler_.get(), coefficients, isFullRange(frame), coefficients,
                             isFullRange(target.pixelFormatType()), 0, 1 << 16, 1 << 16);
    return {};
}

} // namespace platform
