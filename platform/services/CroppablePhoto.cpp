// SPDX-License-Identifier: MIT
#include "platform/services/CroppablePhoto_p.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/UIImage_p.h"
#include "platform/graphics/decodeImage.h"

#include <algorithm>
#include <span>

namespace platform {

namespace {

constexpr std::size_t largestFile = 512UL * 1024 * 1024;

CGSize pixelsOf(const UIImage& image)
{
    return {static_cast<double>(image.pixelWidth()), static_cast<double>(image.pixelHeight())};
}

// Decoded no larger than needed.
Result<CroppablePhoto::Shown> decoded(const std::string& path, int side)
{
    auto data = TRY(readFileHead(URL::fileURL(path), largestFile));
    auto bytes = std::as_bytes(std::span(data));
    auto image = TRY(decodeImage(bytes, {.sufficientSize = PixelSize{side, side}}));
    return CroppablePhoto::Shown{
        std::move(image.image),
        {static_cast<double>(image.fullSize.width), static_cast<double>(image.fullSize.height)}};
}

} // namespace

Result<CroppablePhoto::Shown> CroppablePhoto::shown(int side) const
{
    if (auto* path = std::get_if<std::string>(&source_))
        return decoded(*path, side);
    auto picture = std::get<UIImage>(source_);
    auto shorter = std::min(picture.pixelWidth(), picture.pixelHeight());
    if (shorter == 0)
        return failure(NSCocoaError::fileReadCorruptFile);
    if (shorter <= side)
        return Shown{picture, pixelsOf(picture)};
    auto smaller =
        qImage(picture).scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    return Shown{imageFrom(std::move(smaller), 1), pixelsOf(picture)};
}

Result<CroppablePhoto::Cut> CroppablePhoto::cut(const CGRect& part) const
{
    auto* path = std::get_if<std::string>(&source_);
    auto whole = path ? TRY(UIImage::fromFile(*path)) : std::get<UIImage>(source_);
    auto inside = part.intersection({{}, pixelsOf(whole)});
    // The file may be another one by now.
    if (inside.isEmpty())
        return failure(NSCocoaError::fileReadCorruptFile);
    auto copy = qImage(whole).copy(static_cast<int>(inside.minX()), static_cast<int>(inside.minY()),
                                   static_cast<int>(inside.width()), static_cast<int>(inside.height()));
    return Cut{imageFrom(std::move(copy), whole.scale()), std::move(whole)};
}

} // namespace platform
