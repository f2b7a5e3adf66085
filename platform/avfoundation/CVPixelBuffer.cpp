// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CVPixelBuffer_p.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace platform {

namespace {

constexpr int greatestSide = 32768;

bool isFullRange(CVPixelFormatType type)
{
    return type == CVPixelFormatType::BGRA32 || type == CVPixelFormatType::planar420YpCbCr8FullRange
        || type == CVPixelFormatType::biPlanar420YpCbCr8FullRange;
}

} // namespace

AVPixelFormat pixelFormat(CVPixelFormatType type)
{
    switch (type) {
    case CVPixelFormatType::BGRA32:
        return AV_PIX_FMT_BGRA;
    case CVPixelFormatType::planar420YpCbCr8:
    case CVPixelFormatType::planar420YpCbCr8FullRange:
        return AV_PIX_FMT_YUV420P;
    case CVPixelFormatType::biPlanar420YpCbCr8VideoRange:
    case CVPixelFormatType::biPlanar420YpCbCr8FullRange:
        return AV_PIX_FMT_NV12;
    case CVPixelFormatType::biPlanar420YpCbCr10VideoRange:
        return AV_PIX_FMT_P010LE;
    }
    return AV_PIX_FMT_NONE;
}

std::shared_ptr<CVPixelBuffer> CVPixelBuffer::make(int width, int height, CVPixelFormatType format,
                                                   const ColorDescription& color)
{
    if (width <= 0 || height <= 0 || width > greatestSide || height > greatestSide)
        return nullptr;
    auto picture = makeFrame();
    picture->width = width;
    picture->height = height;
    picture->format = pixelFormat(format);
    picture->color_primaries = static_cast<AVColorPrimaries>(color.primaries);
    picture->color_trc = static_cast<AVColorTransferCharacteristic>(color.transfer);
    picture->colorspace = static_cast<AVColorSpace>(color.matrix);
    picture->color_range = isFullRange(format) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    if (av_frame_get_buffer(picture.get(), 0) < 0)
        return nullptr;
    return std::make_shared<CVPixelBuffer>(std::make_unique<Frame>(std::move(picture), format));
}

std::shared_ptr<CVPixelBuffer> makePixelBuffer(const AVFrame& frame, CVPixelFormatType type)
{
    // Rows from the bottom up are nobody's to know of outside.
    if (frame.format != pixelFormat(type) || frame.linesize[0] < 0)
        return nullptr;
    auto picture = makeFrame();
    if (av_frame_ref(picture.get(), &frame) < 0)
        return nullptr;
    return std::make_shared<CVPixelBuffer>(std::make_unique<CVPixelBuffer::Frame>(std::move(picture), type));
}

CVPixelBuffer::CVPixelBuffer(std::unique_ptr<Frame> frame)
    : frame_(std::move(frame))
{
}

CVPixelBuffer::~CVPixelBuffer() = default;

int CVPixelBuffer::width() const
{
    return frame_->picture->width;
}

int CVPixelBuffer::height() const
{
    return frame_->picture->height;
}

CVPixelFormatType CVPixelBuffer::pixelFormatType() const
{
    return frame_->type;
}

ColorDescription CVPixelBuffer::color() const
{
    auto& picture = *frame_->picture;
    return {.primaries = picture.color_primaries,
            .transfer = picture.color_trc,
            .matrix = picture.colorspace,
            .isFullRange = picture.color_range == AVCOL_RANGE_JPEG};
}

double CVPixelBuffer::pixelAspectRatio() const
{
    auto ratio = frame_->picture->sample_aspect_ratio;
    return ratio.num > 0 && ratio.den > 0 ? av_q2d(ratio) : 1;
}

int CVPixelBuffer::planeCount() const
{
    return av_pix_fmt_count_planes(static_cast<AVPixelFormat>(frame_->picture->format));
}

int CVPixelBuffer::height(int plane) const
{
    auto* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame_->picture->format));
    return plane == 0 ? height() : AV_CEIL_RSHIFT(height(), format->log2_chroma_h);
}

std::size_t CVPixelBuffer::bytesPerRow(int plane) const
{
    return static_cast<std::size_t>(frame_->picture->linesize[plane]);
}

const std::byte* CVPixelBuffer::baseAddress(int plane) const
{
    return reinterpret_cast<const std::byte*>(frame_->picture->data[plane]);
}

std::byte* CVPixelBuffer::mutableBaseAddress(int plane)
{
    return reinterpret_cast<std::byte*>(frame_->picture->data[plane]);
}

} // namespace platform
