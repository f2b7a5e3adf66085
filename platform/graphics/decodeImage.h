// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"

#include <cstddef>
#include <optional>
#include <span>

namespace platform {

// Lengths in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;

    long long count() const { return static_cast<long long>(width) * height; }
    bool operator==(const PixelSize&) const = default;
};

struct ImageDecodingOptions {
    // Pixels per point of the picture with all its pixels. Not positive: 1.
    CGFloat scale = 1;
    // The picture may come with fewer pixels, but no fewer than these on either axis. None: with all.
    std::optional<PixelSize> sufficientSize = std::nullopt;
    // A picture that claims more is refused before anything is decoded.
    long long maximumPixelCount = UIImage::maximumPixelCount;
};

// A picture with as many pixels as are needed. Its size in points, and so its layout, is that of the whole picture, to
// within a pixel of the smaller one: its scale is lower by as much as it is smaller.
struct DecodedImage {
    UIImage image;
    PixelSize fullSize; // upright, as it is in the data
};

// As UIImage::fromData, for pictures of strangers that are shown small: time and memory go with what is shown where the
// format allows (JPEG), memory afterwards always. Any thread. Errors: as UIImage::fromData.
[[nodiscard]] Result<DecodedImage> decodeImage(std::span<const std::byte> data,
                                               const ImageDecodingOptions& options = {});

// What the data's head claims, upright; nothing when it is no picture. Decodes nothing.
std::optional<PixelSize> imagePixelSize(std::span<const std::byte> data);

} // namespace platform
