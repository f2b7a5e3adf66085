// SPDX-License-Identifier: MIT
#include "platform/graphics/DeferredImage.h"

#include "platform/graphics/UIImage_p.h"

#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr long long smallPixelCount = 128 * 128; // decoded within half a millisecond

std::uint32_t bigEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (auto byte : bytes.substr(0, 4))
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

// Chunk after chunk: a length, a name, so many bytes, a check sum.
bool isWholePNG(std::string_view data)
{
    constexpr std::size_t signature = 8, frame = 12;
    if (!data.starts_with("\x89PNG"))
        return false;
    for (auto at = signature; at < data.size() && data.size() - at >= frame;) {
        auto chunk = data.substr(at);
        auto length = std::size_t(bigEndian(chunk));
        if (chunk.size() - frame < length)
            return false;
        if (chunk.substr(4, 4) == "IEND")
            return true;
        at += frame + length;
    }
    return false;
}

bool isJPEG(std::string_view data)
{
    return data.starts_with("\xff\xd8");
}

// Of the other formats nothing is said.
bool isKnownToBeWhole(std::string_view data)
{
    return isWholePNG(data) || (isJPEG(data) && data.ends_with("\xff\xd9"));
}

std::span<const std::byte> bytes(const std::string& data)
{
    return std::as_bytes(std::span(data.data(), data.size()));
}

} // namespace

DeferredImage::DeferredImage(UIImage image, PixelSize fullSize, bool isFasterWithFewerPixels,
                             std::shared_ptr<Wish> wish)
    : image_(std::move(image))
    , fullSize_(fullSize)
    , isFasterWithFewerPixels_(isFasterWithFewerPixels)
    , wish_(std::move(wish))
{
}

Result<std::shared_ptr<DeferredImage>> DeferredImage::make(std::shared_ptr<const std::string> data,
                                                           const ImageDecodingOptions& options)
{
    using Made = std::shared_ptr<DeferredImage>;
    auto full = imagePixelSize(bytes(*data));
    if (!full || full->count() <= smallPixelCount || full->count() > options.maximumPixelCount
        || !isKnownToBeWhole(*data)) {
        auto decoded = TRY(decodeImage(bytes(*data), options));
        return Made(new DeferredImage(std::move(decoded.image), decoded.fullSize, false, nullptr));
    }
    auto isFaster = isJPEG(*data);
    auto wish = std::make_shared<Wish>();
    wish->sufficientSize = options.sufficientSize;
    auto decode = [wish, options = options, data = std::move(data)]() mutable {
        {
            std::lock_guard lock(wish->mutex);
            options.sufficientSize = wish->sufficientSize;
        }
        auto decoded = decodeImage(bytes(*data), options);
        return decoded ? qImage(decoded->image) : QImage();
    };
    UIImage image(std::make_shared<const Bitmap>(QSize(full->width, full->height), std::move(decode)),
                  options.scale);
    return Made(new DeferredImage(std::move(image), *full, isFaster, std::move(wish)));
}

void DeferredImage::setSufficientSize(std::optional<PixelSize> size)
{
    if (!wish_)
        return;
    std::lock_guard lock(wish_->mutex);
    wish_->sufficientSize = size;
}

std::optional<PixelSize> DeferredImage::decode() const
{
    PixelSize size{image_.pixelWidth(), image_.pixelHeight()};
    return size.width > 0 ? std::optional(size) : std::nullopt;
}

} // namespace platform
