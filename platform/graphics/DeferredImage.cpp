// SPDX-License-Identifier: MIT
#include "platform/graphics/DeferredImage.h"

#include "platform/graphics/UIImage_p.h"

#include <ranges>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr long long smallPixelCount = 128 * 128; // decoded within half a millisecond

template <class Bytes>
std::size_t number(const Bytes& mostSignificantFirst)
{
    std::size_t value = 0;
    for (auto byte : mostSignificantFirst)
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
        auto length = number(chunk.substr(0, 4));
        if (chunk.size() - frame < length)
            return false;
        if (chunk.substr(4, 4) == "IEND")
            return true;
        at += frame + length;
    }
    return false;
}

// Half of one is decoded too, and grey where it ends.
bool isJPEG(std::string_view data)
{
    return data.starts_with("\xff\xd8");
}

bool isKnownToBeWhole(std::string_view data)
{
    auto saysItsSize = [data](std::string_view name, std::size_t place, std::size_t more) {
        return data.starts_with(name) && data.size() >= place + 4
            && data.size() >= number(std::views::reverse(data.substr(place, 4))) + more;
    };
    return isJPEG(data) || isWholePNG(data) || (data.starts_with("GIF8") && data.ends_with(';'))
        || saysItsSize("RIFF", 4, 8) || saysItsSize("BM", 2, 0);
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
