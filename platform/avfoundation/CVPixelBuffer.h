// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace platform {

// How the pixels of a picture lie in memory.
enum class CVPixelFormatType : FourCharCode {
    // one plane; blue, green, red, alpha, 8 bits each, alpha premultiplied
    BGRA32 = fourCharCode("BGRA"),
    // three planes, 8 bits; chroma at half width and height
    planar420YpCbCr8 = fourCharCode("y420"),
    planar420YpCbCr8FullRange = fourCharCode("f420"),
    // two planes, 8 bits; chroma pairs at half width and height
    biPlanar420YpCbCr8VideoRange = fourCharCode("420v"),
    biPlanar420YpCbCr8FullRange = fourCharCode("420f"),
    // two planes, 10 bits in the high end of 16, little-endian
    biPlanar420YpCbCr10VideoRange = fourCharCode("x420"),
};

// How a picture's numbers mean colours: code points of ISO/IEC 23091-2, where 2 is "not said".
struct ColorDescription {
    int primaries = 2;
    int transfer = 2;
    int matrix = 2;
    bool isFullRange = false;
    bool operator==(const ColorDescription&) const = default;
};

// A picture in memory. Owned by whoever holds the pointer; the pixels of a picture that came from a reader are
// shared and not to be written. Any thread, one writer at a time.
class CVPixelBuffer {
public:
    // A picture with room for its pixels, which hold anything. Null when the size is not positive, is beyond
    // 32768 in a direction, or there is no memory.
    static std::shared_ptr<CVPixelBuffer> make(int width, int height, CVPixelFormatType format,
                                               const ColorDescription& color = {});

    int width() const;
    int height() const;
    CVPixelFormatType pixelFormatType() const;
    ColorDescription color() const;
    // Width of a pixel divided by its height; 1 when the pixels are square.
    double pixelAspectRatio() const;
    int planeCount() const;
    // Rows of a plane and the bytes from one to the next, which may be more than the row's pixels take.
    int height(int plane) const;
    std::size_t bytesPerRow(int plane) const;
    const std::byte* baseAddress(int plane) const;
    std::byte* mutableBaseAddress(int plane);

    struct Frame;
    explicit CVPixelBuffer(std::unique_ptr<Frame> frame);
    ~CVPixelBuffer();
    // Held by pointer: pixels are shared, not copied by accident.
    CVPixelBuffer(const CVPixelBuffer&) = delete;
    CVPixelBuffer& operator=(const CVPixelBuffer&) = delete;

    const Frame& frame() const { return *frame_; }

private:
    std::unique_ptr<Frame> frame_;
};

// How pictures are read from a track; the fields are the platform's keys. Without a size the pictures have the
// size of the source's.
struct PixelBufferAttributes {
    CVPixelFormatType kCVPixelBufferPixelFormatTypeKey = CVPixelFormatType::BGRA32;
    std::optional<int> kCVPixelBufferWidthKey;
    std::optional<int> kCVPixelBufferHeightKey;
    bool operator==(const PixelBufferAttributes&) const = default;
};

} // namespace platform
