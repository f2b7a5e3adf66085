// SPDX-License-Identifier: MIT
#include "platform/graphics/decodeImage.h"

#include "platform/graphics/UIImage_p.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>

#include <algorithm>
#include <array>
#include <cmath>

namespace platform {

namespace {

// Less than this is not worth a picture that is short of pixels when it is shown a little larger.
constexpr double leastReduction = 0.75;

// Formats that hold pixels and nothing else. Drawings can name other files, so they are not among them.
bool isPixelFormat(const QByteArray& format)
{
    constexpr std::array formats{"png", "jpeg", "jpg", "gif", "bmp", "ico", "webp"};
    return std::any_of(formats.begin(), formats.end(),
                       [&format](const char* name) { return format == name; });
}

// The decoders have a limit of their own, of a quarter of what we take; it is the process's. Ours is looked at first.
void allowLargestPictures()
{
    // Eight bytes for each pixel, which the deepest formats need.
    constexpr auto megabytes = static_cast<int>(UIImage::maximumPixelCount * 8 / (1024 * 1024));
    static const bool isDone = (QImageReader::setAllocationLimit(megabytes), true);
    static_cast<void>(isDone);
}

class Reader {
public:
    explicit Reader(std::span<const std::byte> data)
        : bytes_(QByteArray::fromRawData(reinterpret_cast<const char*>(data.data()),
                                         static_cast<qsizetype>(data.size())))
        , buffer_(&bytes_)
    {
        buffer_.open(QIODevice::ReadOnly);
        reader_.setDevice(&buffer_);
        reader_.setDecideFormatFromContent(true);
        reader_.setAutoTransform(true);
    }

    // A picture whose head does not say how large it is is none that we decode.
    bool isReadable()
    {
        if (!reader_.canRead())
            return false;
        auto format = reader_.format(); // which is not known any more once the size is
        isIcon_ = format == "ico";
        return isPixelFormat(format) && !reader_.size().isEmpty();
    }
    // Requires: it is readable, and that was asked.
    bool isIcon() const { return isIcon_; }
    PixelSize fullSize() const
    {
        auto size = isOnItsSide() ? reader_.size().transposed() : reader_.size();
        return {size.width(), size.height()};
    }
    QImage read(PixelSize size)
    {
        // Asked of the picture as it lies in the data, before it is turned upright.
        if (QSize wanted(size.width, size.height); size != fullSize())
            reader_.setScaledSize(isOnItsSide() ? wanted.transposed() : wanted);
        allowLargestPictures();
        return reader_.read();
    }

private:
    bool isOnItsSide() const
    {
        return reader_.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    }

    QByteArray bytes_;
    QBuffer buffer_;
    QImageReader reader_;
    bool isIcon_ = false;
};

// Of the pictures in an icon, whose list may say less than they have.
double largestPixelCountInIcon(std::span<const std::byte> data)
{
    // Most significant byte first; 0 beyond the end.
    auto number = [data](std::size_t at, std::size_t length, bool isReversed) {
        std::size_t value = 0;
        for (std::size_t i = 0; i < length && at + length <= data.size(); ++i)
            value = value << 8 | std::to_integer<std::size_t>(data[at + (isReversed ? length - 1 - i : i)]);
        return value;
    };
    constexpr std::size_t head = 6, entry = 16, place = 12, pngWidth = 16, pngHeight = 20;
    double largest = 0;
    for (std::size_t i = 0; i < number(4, 2, true); ++i) {
        auto at = number(head + i * entry + place, 4, true);
        if (number(at, 4, false) == 0x89504E47) // of those that are PNG; others have 256 by 256 at most
            largest = std::max(largest,
                               static_cast<double>(number(at + pngWidth, 4, false))
                                   * static_cast<double>(number(at + pngHeight, 4, false)));
    }
    return largest;
}

PixelSize reducedSize(PixelSize full, const std::optional<PixelSize>& sufficient)
{
    if (!sufficient)
        return full;
    auto factor = std::max(static_cast<double>(std::max(sufficient->width, 1)) / full.width,
                           static_cast<double>(std::max(sufficient->height, 1)) / full.height);
    if (factor > leastReduction)
        return full;
    auto reduced = [factor](int length) {
        return std::max(1, static_cast<int>(std::ceil(length * factor - 1e-6)));
    };
    return {reduced(full.width), reduced(full.height)};
}

std::unexpected<Error> refusal(NSCocoaError code, std::string reason)
{
    return failure(code, {{std::string(NSLocalizedFailureReasonErrorKey), std::move(reason)}});
}

} // namespace

Result<DecodedImage> decodeImage(std::span<const std::byte> data, const ImageDecodingOptions& options)
{
    Reader reader(data);
    if (!reader.isReadable())
        return refusal(NSCocoaError::fileReadCorruptFile, "The data is no picture.");
    auto full = reader.fullSize();
    if (full.count() > options.maximumPixelCount
        || (reader.isIcon()
            && largestPixelCountInIcon(data) > static_cast<double>(options.maximumPixelCount)))
        return refusal(NSCocoaError::fileReadTooLarge, "The picture has too many pixels.");
    auto scale = options.scale > 0 && std::isfinite(options.scale) ? options.scale : 1;
    auto size = reducedSize(full, options.sufficientSize);
    auto image = reader.read(size);
    if (image.isNull())
        return refusal(NSCocoaError::fileReadCorruptFile, "The picture is damaged.");
    // By the longer side, where a part of a pixel is the smaller part of the whole.
    auto reduction = full.width >= full.height ? static_cast<double>(image.width()) / full.width
                                               : static_cast<double>(image.height()) / full.height;
    return DecodedImage{imageFrom(std::move(image), scale * reduction), full};
}

std::optional<PixelSize> imagePixelSize(std::span<const std::byte> data)
{
    Reader reader(data);
    return reader.isReadable() ? std::optional(reader.fullSize()) : std::nullopt;
}

} // namespace platform
