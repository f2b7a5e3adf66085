// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosContent_p.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVURLAsset.h"

#include <QtCore/QFile>
#include <QtGui/QImageReader>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>

namespace platform {

namespace {

constexpr std::array<std::string_view, 14> imageExtensions{
    "jpg", "jpeg", "png", "gif", "webp", "tif", "tiff", "bmp", "heic", "heif", "avif", "dng", "jxl", "ico"};
constexpr std::array<std::string_view, 15> videoExtensions{"mov",  "mp4", "m4v", "mkv",  "webm",
                                                           "avi",  "ogv", "ts",  "m2ts", "mpg",
                                                           "mpeg", "3gp", "flv", "wmv",  "mts"};
// Of what the library of pictures reads, that which is a photo's; it also reads drawings and icons made of text.
constexpr std::array<std::string_view, 7> pixelFormats{"jpeg", "png", "gif", "webp", "tiff", "bmp", "ico"};

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

std::uint64_t bigEndian(std::string_view bytes)
{
    std::uint64_t value = 0;
    for (char byte : bytes)
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

// Whether all boxes of an ISO media file are there to their ends. What names the samples can stand before them, so a
// file whose end is missing may look whole to whoever only opens it.
bool isWhole(const std::string& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    auto size = static_cast<std::uint64_t>(file.tellg());
    std::array<char, 16> head;
    for (std::uint64_t place = 0; place < size;) {
        file.clear();
        file.seekg(static_cast<std::streamoff>(place));
        file.read(head.data(), head.size());
        auto count = static_cast<std::size_t>(file.gcount());
        if (count < 8)
            return false;
        auto length = bigEndian({head.data(), 4});
        if (length == 0)
            return true; // to the end of the file, wherever that is
        if (length == 1)
            length = count == head.size() ? bigEndian({head.data() + 8, 8}) : 0;
        if (length < 8 || length > size - place)
            return false;
        place += length;
    }
    return true;
}

std::optional<std::string> imageExtension(const std::string& path, std::string_view head)
{
    auto brand = brandOf(head);
    if (isOneOf(brand, {"heic", "heix", "heim", "heis", "mif1", "avif"})) // not every machine can read these
        return isWhole(path) ? std::optional(std::string(brand == "avif" ? "avif" : "heic")) : std::nullopt;
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
    return format == "jpeg" ? "jpg" : format;
}

std::optional<std::string> videoExtension(const std::string& path, std::string_view head)
{
    auto brand = brandOf(head);
    auto isISO =
        !brand.empty() || (head.size() >= 8 && isOneOf(head.substr(4, 4), {"moov", "mdat", "wide", "free"}));
    if (isISO && !isWhole(path))
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
    if (auto extension = imageExtension(path, head))
        return PHPhotosContent{PHAssetMediaType::image, std::move(*extension)};
    if (auto extension = videoExtension(path, head))
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
