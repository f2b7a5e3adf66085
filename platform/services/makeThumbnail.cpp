// SPDX-License-Identifier: MIT
#include "platform/services/ThumbnailLoader.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/graphics/UIImage_p.h"
#include "platform/services/PHPhotosContent_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QImage>
#include <QtGui/QImageReader>

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr long long mostPixels = 64LL * 1024 * 1024;

// What the library of JPEG decodes without scaling a second time: so many eighths.
QSize inEighths(QSize size, int side)
{
    auto shorter = std::min(size.width(), size.height());
    auto eighths = (8 * side + shorter - 1) / shorter;
    auto part = [eighths](int length) { return (length * eighths + 7) / 8; };
    return {part(size.width()), part(size.height())};
}

// The square in the middle is what cells show.
UIImage squareOf(const QImage& picture, ThumbnailSize size)
{
    auto side = size.side;
    auto shorter = std::min(picture.width(), picture.height());
    auto square =
        picture.copy((picture.width() - shorter) / 2, (picture.height() - shorter) / 2, shorter, shorter);
    if (shorter > side)
        square = square.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return imageFrom(std::move(square), size.scale);
}

// Decoded at its final size where the format can, as the most frequent one can.
UIImage photoThumbnail(const QString& path, ThumbnailSize wanted)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    auto format = reader.format();
    if (format == "svg" || format == "svgz")
        return {};
    auto size = reader.size();
    // What must be decoded as a whole is only shown by its name when it is huge.
    if (format != "jpeg" && static_cast<long long>(size.width()) * size.height() > mostPixels)
        return {};
    if (auto side = wanted.side; size.isValid() && std::min(size.width(), size.height()) > side) {
        // Below this quality the decoder takes the faster of its ways, which nobody sees at this size.
        if (format == "jpeg")
            reader.setQuality(49);
        reader.setScaledSize(format == "jpeg" ? inEighths(size, side)
                                              : size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    }
    auto picture = reader.read();
    return picture.isNull() ? UIImage() : squareOf(picture, wanted);
}

Thumbnail videoThumbnail(const LibraryFile& file, ThumbnailSize size)
{
    auto asset = std::make_shared<AVURLAsset>(URL::fileURL(file.path));
    Thumbnail thumbnail;
    auto seconds = asset->duration().seconds();
    thumbnail.seconds = std::isfinite(seconds) ? seconds : 0;
    AVAssetImageGenerator generator(asset);
    generator.setAppliesPreferredTrackTransform(true);
    auto reach = static_cast<CGFloat>(2 * size.side);
    generator.setMaximumSize({reach, reach});
    // The very first picture of many films is black.
    if (auto image = generator.copyCGImage(CMTime(seconds > 2 ? 1 : 0, 1)))
        thumbnail.image = squareOf(qImage(*image), size);
    return thumbnail;
}

} // namespace

Thumbnail makeThumbnail(const LibraryFile& file, ThumbnailSize size)
{
    auto path = QString::fromStdString(file.path);
    if (!QFileInfo(path).isFile())
        return {.image = {}, .size = size, .isMedium = false};
    auto thumbnail =
        file.isVideo ? videoThumbnail(file, size) : Thumbnail{.image = photoThumbnail(path, size)};
    thumbnail.size = size;
    // There are photos that this machine has no codec for.
    if (thumbnail.image.isEmpty())
        thumbnail.isMedium = photosContentOf(file.path).has_value();
    return thumbnail;
}

} // namespace platform
