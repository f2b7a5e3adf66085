// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosContent_p.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/services/PHPhotosWholeness_p.h"

#include <QtCore/QFile>
#include <QtGui/QImageReader>

#include <algorithm>
#include <array>
#include <fstream>

namespace platform {

namespace {

constexpr std::array<std::string_view, 14> imageExtensions{
    "jpg", "jpeg", "png", "gif", "webp", "tif", "tiff", "bmp", "heic", "heif", "avif", "dng", "jxl", "ico"};
constexpr std::array<std::string_view, 15> videoExtensions{"mov",  "mp4", "m4v", "mkv",  "webm",
                                                           "avi",  "ogv", "ts",  "m2ts", "mpg",
                                                           "mpeg", "3gp", "flv", "wmv",  "mts"};
// Of what the library of pictures reads, that which is a photo's; it also reads drawings and icons made of text.
constexpr std::array<std::string_view, 6> pixelFormats{"jpeg", "png", "gif", "tiff", "bmp", "ico"};

std::string headOf(const std::string& path)
{
    std::string head(64, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return head;
}

bool isOneOf(std::string_view brand, std::initializer_list<std::string_view> brands)
{
    return std::ranges::find(brands, brand) != brands.end();
}

// The brand of a file in the ISO base media format: "qt  ", "isom", "heic". Empty for others.
std::string_view brandOf(std::string_view head)
{
    return head.size() >= 12 && head.substr(4, 4) == "ftyp" ? head.substr(8, 4) : std::string_view();
}

// Empty for a picture that is cut off.
std::optional<std::string> imageExtension(const std::string& path, std::string_view head)
{
    auto brand = brandOf(head);
    if (isOneOf(brand, {"heic", "heix", "heim", "heis", "mif1", "avif"})) // not every machine can read these
        return !isWholeISOMedia(path) ? "" : brand == "avif" ? "avif" : "heic";
    if (head.size() >= 12 && head.starts_with("RIFF") && head.substr(8, 4) == "WEBP") // nor these
        return isWholePicture(path, "webp") ? "webp" : "";
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || !reader.size().isValid() || reader.size().isEmpty())
        return std::nullopt;
    auto format = reader.format().toStdString();
    if (std::ranges::find(pixelFormats, format) == pixelFormats.end())
        return std::nullopt;
    if (!isWholePicture(path, format))
        return "";
    return format == "jpeg" ? "jpg" : format;
}

std::optional<std::string> videoExtension(const std::string& path, std::string_view head)
{
    auto brand = brandOf(head);
    auto isISO =
        !brand.empty() || (head.size() >= 8 && isOneOf(head.substr(4, 4), {"moov", "mdat", "wide", "free"}));
    if (isISO ? !isWholeISOMedia(path) : !isWholeVideo(path))
        return std::nullopt;
    AVURLAsset asset(URL::fileURL(path));
    auto tracks = asset.tracksWithMediaType(AVMediaType::video);
    if (asset.loadError() || tracks.empty() || !(CMTime::zero() < asset.duration()))
        return std::nullopt;
    auto size = tracks.front()->naturalSize();
    if (!(size.width > 0) || !(size.height > 0))
        return std::nullopt;
    if (isISO)
        return brand == "qt  " || brand.empty() ? "mov" : "mp4";
    if (head.starts_with("\x1A\x45\xDF\xA3"))
        return head.find("webm") != head.npos ? "webm" : "mkv";
    if (head.starts_with("RIFF"))
        return "avi";
    if (head.starts_with("OggS"))
        return "ogv";
    return "mpg";
}

} // namespace

std::optional<PHPhotosContent> photosContentOf(const std::string& path)
{
    auto head = headOf(path);
    auto extension = imageExtension(path, head);
    if (extension && extension->empty())
        return std::nullopt; // some are films to the decoders of films
    if (extension)
        return PHPhotosContent{PHAssetMediaType::image, std::move(*extension)};
    extension = videoExtension(path, head);
    if (extension)
        return PHPhotosContent{PHAssetMediaType::video, std::move(*extension)};
    return std::nullopt;
}

bool isUsualExtension(std::string_view pathExtension, PHAssetMediaType type)
{
    std::string lower(pathExtension);
    for (char& c : lower)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return type == PHAssetMediaType::image
        ? std::ranges::find(imageExtensions, lower) != imageExtensions.end()
        : std::ranges::find(videoExtensions, lower) != videoExtensions.end();
}

} // namespace platform
