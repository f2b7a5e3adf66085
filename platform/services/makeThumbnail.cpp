// SPDX-License-Identifier: MIT
#include "platform/services/ThumbnailLoader.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/services/PHPhotosContent_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QImage>
#include <QtGui/QImageReader>

#include <algorithm>
#include <cmath>
#include <span>

namespace platform {

namespace {

constexpr int longest = 4; // times the shorter side

UIImage imageOf(const QImage& decoded, int side)
{
    auto picture = decoded.convertToFormat(QImage::Format_RGBA8888);
    auto width = std::min(picture.width(), longest * side),
         height = std::min(picture.height(), longest * side);
    if (width != picture.width() || height != picture.height())
        picture = picture.copy((picture.width() - width) / 2, (picture.height() - height) / 2, width, height);
    // Rows of four bytes a pixel have no padding.
    return UIImage::fromPixels(
        std::as_bytes(std::span(picture.constBits(), static_cast<std::size_t>(picture.sizeInBytes()))), width,
        height);
}

// Decoded at its final size where the format can, as the most frequent one can.
UIImage photoThumbnail(const QString& path, int side)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (auto format = reader.format(); format == "svg" || format == "svgz")
        return {};
    if (auto size = reader.size(); size.isValid() && std::min(size.width(), size.height()) > side)
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    auto picture = reader.read();
    if (picture.isNull())
        return {};
    if (std::min(picture.width(), picture.height()) > side)
        picture = picture.scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    return imageOf(picture, side);
}

Thumbnail videoThumbnail(const LibraryFile& file, int side)
{
    auto asset = std::make_shared<AVURLAsset>(URL::fileURL(file.path));
    Thumbnail thumbnail;
    auto seconds = asset->duration().seconds();
    thumbnail.seconds = std::isfinite(seconds) ? seconds : 0;
    AVAssetImageGenerator generator(asset);
    generator.setAppliesPreferredTrackTransform(true);
    auto reach = static_cast<CGFloat>(2 * side);
    generator.setMaximumSize({reach, reach});
    // The very first picture of many films is black.
    if (auto image = generator.copyCGImage(CMTime(seconds > 2 ? 1 : 0, 1)))
        thumbnail.image = *image;
    return thumbnail;
}

} // namespace

Thumbnail makeThumbnail(const LibraryFile& file, int side)
{
    auto path = QString::fromStdString(file.path);
    if (!QFileInfo(path).isFile())
        return {.image = {}, .isMedium = false};
    auto thumbnail =
        file.isVideo ? videoThumbnail(file, side) : Thumbnail{.image = photoThumbnail(path, side)};
    // There are photos that this machine has no codec for.
    if (thumbnail.image.isEmpty())
        thumbnail.isMedium = photosContentOf(file.path).has_value();
    return thumbnail;
}

} // namespace platform
