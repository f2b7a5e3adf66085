// SPDX-License-Identifier: MIT
#include "platform/avfoundation/SyntheticPicture_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace platform {

namespace {

struct Light {
    double red = 0, green = 0, blue = 0; // 0...1
};

Light mixed(const Light& a, const Light& b, double part)
{
    part = std::clamp(part, 0.0, 1.0);
    return {std::lerp(a.red, b.red, part), std::lerp(a.green, b.green, part),
            std::lerp(a.blue, b.blue, part)};
}

struct Numbers {
    std::uint8_t y = 0, u = 0, v = 0;
};

// By BT.709, in the range of video.
Numbers numbersOf(const Light& light)
{
    auto y = 0.2126 * light.red + 0.7152 * light.green + 0.0722 * light.blue;
    auto byte = [](double value) { return static_cast<std::uint8_t>(std::lround(value)); };
    return {byte(16 + 219 * y), byte(128 + 224 * (light.blue - y) / 1.8556),
            byte(128 + 224 * (light.red - y) / 1.5748)};
}

// Hills before an evening sky. Both coordinates from 0 to 1.
Light landscape(double x, double y)
{
    auto ridge = [&](double height, double waves, double phase, double depth) {
        return height + depth * std::sin(waves * x + phase) + depth / 2 * std::sin(2.3 * waves * x + 1);
    };
    if (y > ridge(0.80, 5, 0.4, 0.03))
        return mixed({0.16, 0.34, 0.27}, {0.07, 0.19, 0.17}, (y - 0.78) * 5);
    if (y > ridge(0.70, 4, 2.1, 0.04))
        return mixed({0.27, 0.47, 0.44}, {0.17, 0.35, 0.33}, (y - 0.66) * 6);
    if (y > ridge(0.60, 3, 4.0, 0.06))
        return mixed({0.45, 0.58, 0.66}, {0.32, 0.47, 0.55}, (y - 0.52) * 6);
    return y < 0.35 ? mixed({0.20, 0.45, 0.78}, {0.56, 0.76, 0.93}, y / 0.35)
                    : mixed({0.56, 0.76, 0.93}, {1.00, 0.87, 0.72}, (y - 0.35) / 0.3);
}

// Somebody before a wall.
Light portrait(double x, double y, double aspect)
{
    auto distance = [&](double centerX, double centerY, double wide, double high) {
        return std::hypot((x - centerX) * aspect / wide, (y - centerY) / high);
    };
    if (distance(0.5, 0.44, 0.155, 0.20) < 1)
        return mixed({0.96, 0.80, 0.68}, {0.86, 0.64, 0.52}, distance(0.47, 0.40, 0.3, 0.34));
    if (std::abs(x - 0.5) * aspect < 0.06 && y > 0.5 && y < 0.72)
        return {0.84, 0.62, 0.50};
    if (distance(0.5, 0.38, 0.20, 0.23) < 1)
        return {0.27, 0.17, 0.13};
    if (distance(0.5, 1.08, 0.50, 0.42) < 1)
        return mixed({0.20, 0.46, 0.66}, {0.11, 0.29, 0.46}, (y - 0.66) * 3);
    return mixed({0.93, 0.89, 0.82}, {0.74, 0.70, 0.66}, std::hypot(x - 0.3, y - 0.2));
}

// The row of squares: bright, dark, then the number's sixteen digits.
constexpr int squares = 18;
constexpr std::uint8_t bright = 225, dark = 30;

struct Square {
    int left, top, right, bottom;
};

Square squareAt(int index, int width, int height)
{
    auto side = width / (squares + 2);
    return {side * (index + 1), height - side - side / 2, side * (index + 2), height - side / 2};
}

bool isBright(int index, int number)
{
    return index == 0 || (index >= 2 && (number >> (squares - 1 - index) & 1));
}

} // namespace

SyntheticPicture::SyntheticPicture(int width, int height, AVCaptureDevicePosition position)
    : width_(width)
    , height_(height)
    , isPortrait_(position == AVCaptureDevicePosition::front)
    , luma_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    , blue_(luma_.size() / 4)
    , red_(luma_.size() / 4)
{
    const double aspect = static_cast<double>(width) / height;
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            auto x = (column + 0.5) / width, y = (row + 0.5) / height;
            auto numbers = numbersOf(isPortrait_ ? portrait(x, y, aspect) : landscape(x, y));
            auto place = static_cast<std::size_t>(row) * static_cast<std::size_t>(width)
                + static_cast<std::size_t>(column);
            luma_[place] = numbers.y;
            if (row % 2 == 0 && column % 2 == 0) {
                auto chroma = static_cast<std::size_t>(row / 2) * static_cast<std::size_t>(width / 2)
                    + static_cast<std::size_t>(column / 2);
                blue_[chroma] = numbers.u;
                red_[chroma] = numbers.v;
            }
        }
    }
}

std::shared_ptr<CVPixelBuffer> SyntheticPicture::draw(int number) const
{
    // Code points of BT.709.
    auto picture = CVPixelBuffer::make(width_, height_, CVPixelFormatType::planar420YpCbCr8,
                                       {.primaries = 1, .transfer = 1, .matrix = 1});
    if (!picture)
        return nullptr;
    auto rowOf = [&](int plane, int row) {
        return reinterpret_cast<std::uint8_t*>(picture->mutableBaseAddress(plane))
            + static_cast<std::size_t>(row) * picture->bytesPerRow(plane);
    };
    const std::array planes{&luma_, &blue_, &red_};
    for (int plane = 0; plane < 3; ++plane) {
        auto wide = static_cast<std::size_t>(plane == 0 ? width_ : width_ / 2);
        for (int row = 0; row < picture->height(plane); ++row)
            std::memcpy(
                rowOf(plane, row),
                planes[static_cast<std::size_t>(plane)]->data() + static_cast<std::size_t>(row) * wide, wide);
    }
    // The sun, once around in ten seconds; a lamp at the wall that swings.
    const double angle = number * 2 * M_PI / 300, radius = height_ / (isPortrait_ ? 24.0 : 14.0);
    const double sunX = width_ * (isPortrait_ ? 0.32 + 0.03 * std::cos(angle) : 0.5 - 0.32 * std::cos(angle));
    const double sunY =
        height_ * (isPortrait_ ? 0.12 + 0.01 * std::sin(angle) : 0.22 + 0.1 * std::sin(angle));
    const auto sun = numbersOf({1.0, 0.93, 0.62});
    for (int row = static_cast<int>(sunY - radius); row < static_cast<int>(sunY + radius); ++row) {
        auto half = std::sqrt(std::max(radius * radius - (row - sunY) * (row - sunY), 0.0));
        auto left = static_cast<int>(sunX - half) / 2 * 2, wide = static_cast<int>(half * 2) / 2 * 2;
        if (row < 0 || row >= height_ || left < 0 || left + wide > width_)
            continue;
        std::memset(rowOf(0, row) + left, sun.y, static_cast<std::size_t>(wide));
        std::memset(rowOf(1, row / 2) + left / 2, sun.u, static_cast<std::size_t>(wide / 2));
        std::memset(rowOf(2, row / 2) + left / 2, sun.v, static_cast<std::size_t>(wide / 2));
    }
    for (int index = 0; index < squares; ++index) {
        auto square = squareAt(index, width_, height_);
        for (int row = square.top; row < square.bottom; ++row) {
            auto wide = static_cast<std::size_t>(square.right - square.left);
            std::memset(rowOf(0, row) + square.left, isBright(index, number) ? bright : dark, wide);
            std::memset(rowOf(1, row / 2) + square.left / 2, 128, wide / 2);
            std::memset(rowOf(2, row / 2) + square.left / 2, 128, wide / 2);
        }
    }
    return picture;
}

int SyntheticPicture::numberOf(const std::byte* luma, std::size_t bytesPerRow, int width, int height)
{
    int number = 0;
    for (int index = 0; index < squares; ++index) {
        auto square = squareAt(index, width, height);
        auto row = static_cast<std::size_t>((square.top + square.bottom) / 2);
        auto column = static_cast<std::size_t>((square.left + square.right) / 2);
        auto isLit = std::to_integer<int>(luma[row * bytesPerRow + column]) > (bright + dark) / 2;
        if (index < 2 && isLit != (index == 0))
            return -1;
        if (index >= 2)
            number = number * 2 + (isLit ? 1 : 0);
    }
    return number;
}

} // namespace platform
