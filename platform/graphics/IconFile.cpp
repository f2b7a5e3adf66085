// SPDX-License-Identifier: MIT
#include "platform/graphics/IconFile.h"

#include "platform/foundation/FileReading_p.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace platform {

namespace {

constexpr std::size_t headerSize = 8; // four letters, and the size with this header, highest byte first
constexpr std::array<unsigned char, 8> pngSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t pngWidthOffset = 16;
constexpr std::size_t largestFile = 64 * 1024 * 1024; // what is longer is cut off, and refused as such

std::uint32_t numberAt(std::span<const std::byte> data, std::size_t offset)
{
    std::uint32_t number = 0;
    for (auto byte : data.subspan(offset, 4))
        number = number << 8 | std::to_integer<std::uint32_t>(byte);
    return number;
}

// 0 for what is no PNG.
std::uint32_t widthOf(std::span<const std::byte> picture)
{
    if (picture.size() < pngWidthOffset + 4)
        return 0;
    bool isPNG = std::ranges::equal(picture.first(pngSignature.size()), pngSignature, {},
                                    [](std::byte byte) { return std::to_integer<unsigned char>(byte); });
    return isPNG ? numberAt(picture, pngWidthOffset) : 0;
}

} // namespace

Result<UIImage> iconFromData(std::span<const std::byte> data)
{
    constexpr std::uint32_t magic = 'i' << 24 | 'c' << 16 | 'n' << 8 | 's';
    if (data.size() < headerSize || numberAt(data, 0) != magic || numberAt(data, 4) > data.size()
        || numberAt(data, 4) < headerSize)
        return failure(NSCocoaError::fileReadCorruptFile);
    data = data.first(numberAt(data, 4)).subspan(headerSize);
    std::span<const std::byte> largest;
    while (data.size() >= headerSize) {
        auto size = numberAt(data, 4);
        if (size < headerSize || size > data.size())
            return failure(NSCocoaError::fileReadCorruptFile);
        auto picture = data.first(size).subspan(headerSize);
        if (widthOf(picture) > widthOf(largest))
            largest = picture;
        data = data.subspan(size);
    }
    if (largest.empty())
        return failure(NSCocoaError::fileReadCorruptFile);
    return UIImage::fromData(largest);
}

Result<UIImage> iconFromFile(const URL& file)
{
    auto bytes = TRY(readFileHead(file, largestFile));
    return iconFromData(std::as_bytes(std::span(bytes)));
}

} // namespace platform
