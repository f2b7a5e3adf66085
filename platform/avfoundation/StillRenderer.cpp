// SPDX-License-Identifier: MIT
#include "platform/avfoundation/StillRenderer_p.h"

#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/FrameColors_p.h"
#include "platform/graphics/UIImage_p.h"

#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <bit>
#include <cmath>

namespace platform {

namespace {

// Of an image in a direction: a pixel's shape can ask for any width.
constexpr double greatestSide = 32'767;

static_assert(std::endian::native == std::endian::little, "QImage's 32 bits are stored blue first");

bool hasAlpha(const AVFrame& frame)
{
    auto* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return format && (format->flags & AV_PIX_FMT_FLAG_ALPHA);
}

// The picture's own pixels, which live as long as the image.
QImage imageOf(Frame frame)
{
    const auto format = frame->format == AV_PIX_FMT_BGRA ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    auto* kept = frame.release();
    auto release = [](void* held) { Frame(static_cast<AVFrame*>(held)); };
    return QImage(kept->data[0], kept->width, kept->height, kept->linesize[0], format, release, kept);
}

Result<Frame> makePicture(int width, int height, AVPixelFormat format)
{
    auto picture = makeFrame();
    picture->width = width;
    picture->height = height;
    picture->format = format;
    if (int code = av_frame_get_buffer(picture.get(), 0); code < 0)
        return failure(mediaError(code, MediaWork::decode));
    return picture;
}

// Whether sides stay parallel to the axes.
enum class Turn { none, quarter, oblique };

Turn turnOf(const CGAffineTransform& transform)
{
    const double least = 1e-4 * std::sqrt(std::abs(transform.determinant()));
    if (std::abs(transform.b) <= least && std::abs(transform.c) <= least)
        return Turn::none;
    if (std::abs(transform.a) <= least && std::abs(transform.d) <= least)
        return Turn::quarter;
    return Turn::oblique;
}

// One of the eight ways to lay a picture down: mirrored or not, then turned clockwise by quarters.
QImage laid(QImage image, const CGAffineTransform& transform, Turn turn)
{
    const bool isMirrored = transform.determinant() < 0;
    const double sign = isMirrored ? -1 : 1;
    const int degrees =
        turn == Turn::none ? (transform.a * sign > 0 ? 0 : 180) : (transform.b * sign > 0 ? 90 : 270);
    if (isMirrored)
        image = image.mirrored(true, false);
    return degrees == 0 ? image : image.transformed(QTransform().rotate(degrees));
}

// Any other: drawn into the smallest picture that holds it, transparent about it.
QImage drawn(const QImage& image, const CGAffineTransform& transform, CGSize size)
{
    auto bounds = transform.apply(CGRect::make(0, 0, static_cast<double>(image.width()), image.height()));
    QImage canvas(static_cast<int>(size.width), static_cast<int>(size.height),
                  QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
    painter.scale(size.width / bounds.width(), size.height / bounds.height());
    painter.translate(-bounds.minX(), -bounds.minY());
    painter.setTransform(QTransform(transform.a, transform.b, transform.c, transform.d, 0, 0), true);
    painter.drawImage(QPointF(0, 0), image);
    return canvas;
}

int pixels(double side)
{
    return static_cast<int>(std::clamp(std::round(side), 1.0, greatestSide));
}

} // namespace

CGSize fittedStillSize(CGSize size, CGSize maximum)
{
    auto limit = [](double side) {
        return side > 0 ? std::min(std::max(side, 1.0), greatestSide) : greatestSide;
    };
    const double width = limit(maximum.width), height = limit(maximum.height);
    double scale = std::min({1.0, width / size.width, height / size.height});
    const double area = static_cast<double>(UIImage::maximumPixelCount);
    scale = std::min(scale, std::sqrt(area / (size.width * size.height)));
    auto side = [scale](double length, double greatest) {
        return std::clamp(std::round(length * scale), 1.0, std::floor(greatest));
    };
    return {side(size.width, width), side(size.height, height)};
}

Result<UIImage> StillRenderer::render(const AVFrame& frame)
{
    const CGSize shown{std::max(frame.width * shape_.pixelAspectRatio, 1.0),
                       static_cast<double>(frame.height)};
    const auto bounds = shape_.transform.apply(CGRect{{}, shown}).size;
    if (!(bounds.width > 0) || !(bounds.height > 0) || !std::isfinite(bounds.width * bounds.height))
        return failure(AVError::invalidVideoComposition);
    const auto size = fittedStillSize(bounds, shape_.maximumSize);
    const auto turn = turnOf(shape_.transform);
    if (turn == Turn::oblique) {
        const double scale = std::min(1.0, std::max(size.width / bounds.width, size.height / bounds.height));
        auto picture = TRY(prepare(frame, pixels(shown.width * scale), pixels(shown.height * scale)));
        return imageFrom(drawn(imageOf(std::move(picture)), shape_.transform, size), 1);
    }
    const bool isQuarter = turn == Turn::quarter;
    auto picture = TRY(prepare(frame, pixels(isQuarter ? size.height : size.width),
                               pixels(isQuarter ? size.width : size.height)));
    return imageFrom(laid(imageOf(std::move(picture)), shape_.transform, turn), 1);
}

// To the size of what is shown, before it is turned, as blue, green, red and alpha or nothing.
Result<Frame> StillRenderer::prepare(const AVFrame& frame, int width, int height)
{
    if (!colors_ || !colors_->suits(frame))
        colors_ = DisplayColors::make(frame);
    if (!colors_)
        return convert(frame, width, height, hasAlpha(frame) ? AV_PIX_FMT_BGRA : AV_PIX_FMT_BGR0);
    auto wide = TRY(convert(frame, width, height, AV_PIX_FMT_RGB48LE));
    auto picture = TRY(makePicture(width, height, AV_PIX_FMT_BGR0));
    for (int y = 0; y < height; ++y)
        colors_->convertRow(
            reinterpret_cast<const std::uint16_t*>(wide->data[0] + std::ptrdiff_t{y} * wide->linesize[0]),
            picture->data[0] + std::ptrdiff_t{y} * picture->linesize[0], width);
    return picture;
}

Result<Frame> StillRenderer::convert(const AVFrame& frame, int width, int height, AVPixelFormat format)
{
    auto picture = TRY(makePicture(width, height, format));
    const bool scales = width != frame.width || height != frame.height;
    // Averages what falls into a pixel; without the other wishes chroma is a pixel off and shades are lost.
    const int quality = SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | (scales ? SWS_AREA : SWS_BILINEAR);
    scaler_.reset(sws_getCachedContext(scaler_.release(), frame.width, frame.height,
                                       static_cast<AVPixelFormat>(frame.format), width, height, format,
                                       quality, nullptr, nullptr, nullptr));
    if (!scaler_)
        return failure(AVError::decodeFailed);
    const int* coefficients = sws_getCoefficients(matrixOf(frame));
    sws_setColorspaceDetails(scaler_.get(), coefficients, isFullRange(frame), coefficients, 1, 0, 1 << 16,
                             1 << 16);
    int rows = sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, picture->data,
                         picture->linesize);
    if (rows < 0)
        return failure(mediaError(rows, MediaWork::decode));
    return picture;
}

} // namespace platform
