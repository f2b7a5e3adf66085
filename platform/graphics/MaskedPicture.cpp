// SPDX-License-Identifier: MIT
#include "platform/graphics/MaskedPicture.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"
#include "platform/graphics/RunPicture_p.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr int leastWait = 2, mostWait = 60;      // frames
constexpr int isWorthwhile = 12;                 // frames that a picture served
constexpr double mostPixels = 4.0 * 1024 * 1024; // while the picture is made
constexpr std::size_t mostBytes = 256 * 1024, mostBytesOfAll = 16 * 1024 * 1024;
std::size_t bytesOfAll = 0;

std::uint64_t& generation()
{
    static std::uint64_t number = 0;
    return number;
}

// What is moved by whole pixels looks the same; 0.1 points more than 7 is 7.1 but for rounding.
CGPoint wholePart(const CGAffineTransform& map, CGAffineTransform& rest)
{
    constexpr double steps = 4096;
    auto part = [](double distance, double& fraction) {
        auto whole = std::floor(std::round(distance * steps) / steps);
        fraction = std::round((distance - whole) * steps) / steps;
        return whole;
    };
    rest = map;
    return {part(map.tx, rest.tx), part(map.ty, rest.ty)};
}

} // namespace

MaskedPicture::MaskedPicture()
    : wait_(leastWait)
{
}

MaskedPicture::~MaskedPicture() = default;

void MaskedPicture::contentDidChange()
{
    if (picture_ && timesSeen_ - wait_ >= isWorthwhile)
        wait_ = leastWait;
    else if (picture_)
        waitLonger();
    timesSeen_ = 0;
    isTooLarge_ = false;
    picture_.reset();
}

void MaskedPicture::waitLonger()
{
    wait_ = std::min(wait_ * 2, mostWait);
}

void MaskedPicture::Uncount::operator()(const RunPicture* picture) const
{
    bytesOfAll -= picture->byteCount();
    delete picture;
}

void MaskedPicture::anythingMayChange()
{
    ++generation();
}

bool MaskedPicture::paint(CGContext& context, const CGRect& area, const CGRect& dirty,
                          const MaskGradient& mask, CGFloat alpha,
                          const std::function<void(CGContext&)>& drawContent)
{
    Key key{{}, area, context.appearance(), generation()};
    auto moved = wholePart(context.pixelTransform(), key.map);
    if (!(key == key_)) {
        contentDidChange();
        key_ = key;
    }
    if (isTooLarge_ || timesSeen_++ < wait_)
        return false;
    if (!picture_)
        keep(made(context, area, drawContent));
    if (!picture_)
        return false;
#if !defined(NDEBUG) && !defined(__OPTIMIZE__)
    constexpr int proofEach = 16; // frames
    if (timesSeen_ % proofEach == 0) {
        auto anew = made(context, area, drawContent);
        if (!picture_)
            return false; // it was told now
        precondition(anew && *anew == *picture_,
                     "what a gradient masks changed and the view around it was not told");
    }
#endif

    auto& backend = context.backend();
    auto place = moved + place_;
    QRect pixels{QPoint(int(place.x), int(place.y)), picture_->size()};
    auto paintInto = [&](const RunPicture::Target& target, const QRect& seen) {
        GradientRows rows(mask, context.pixelTransform(), seen, alpha);
        picture_->paint(target, pixels.topLeft(), seen, rows);
    };
    CGContextState state(context);
    // What is turned does not end where the rectangle does, but where the clip does.
    auto isUpright = key.map.b == 0 && key.map.c == 0;
    if (backend.surface() && isUpright)
        context.clip(dirty);
    if (auto surface = backend.surface()) {
        auto seen = surface->clip & pixels;
        if (!seen.isEmpty())
            paintInto({surface->image, surface->origin, backend.takeGroundOf(seen)}, seen);
        return true;
    }
    context.beginLayer(isUpright ? dirty : context.clipBounds());
    auto& layer = *backend.layers.back();
    if (auto seen = layer.pixels & pixels; !seen.isEmpty())
        paintInto({&layer.image, layer.pixels.topLeft(), QRgb(0)}, seen);
    context.endLayer();
    return true;
}

void MaskedPicture::keep(std::unique_ptr<const RunPicture> picture)
{
    if (!picture)
        return waitLonger();
    auto changedMeanwhile = timesSeen_ == 0;
    if (changedMeanwhile || bytesOfAll + picture->byteCount() > mostBytesOfAll) {
        timesSeen_ = 0;
        return waitLonger();
    }
    bytesOfAll += picture->byteCount();
    picture_.reset(picture.release());
}

std::unique_ptr<const RunPicture> MaskedPicture::made(CGContext& context, const CGRect& area,
                                                      const std::function<void(CGContext&)>& drawContent)
{
    auto& backend = context.backend();
    auto map = context.pixelTransform();
    auto box = map.apply(area);
    CGPoint corner{std::floor(box.minX()), std::floor(box.minY())};
    auto width = std::ceil(box.maxX()) - corner.x, height = std::ceil(box.maxY()) - corner.y;
    isTooLarge_ = !(width > 0 && height > 0 && width * height <= mostPixels && std::abs(corner.x) < 1e6
                    && std::abs(corner.y) < 1e6);
    if (isTooLarge_)
        return nullptr;
    QImage image(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    precondition(!image.isNull(), "no memory for a masked view's picture");
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(backend.scale);
    {
        QPainter painter(&image);
        painter.setWorldTransform(
            backend.baseTransform
            * QTransform::fromTranslate(-corner.x / backend.scale, -corner.y / backend.scale));
        auto inside = contextOver(painter, context.appearance());
        inside.concat(context.transform());
        inside.clip(area);
        drawContent(inside);
    }
    auto picture = std::make_unique<const RunPicture>(image);
    isTooLarge_ = picture->byteCount() > mostBytes;
    if (isTooLarge_)
        return nullptr;
    CGAffineTransform rest;
    place_ = corner - wholePart(map, rest);
    return picture;
}

} // namespace platform
