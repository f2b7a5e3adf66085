// SPDX-License-Identifier: MIT
#include "tests/support/harness/pixels.h"

#include "platform/foundation/Precondition.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace harness {

using namespace platform;

namespace {

using Bytes = std::array<int, 4>;

Bytes bytesAt(const UIImage& image, int x, int y)
{
    precondition(x >= 0 && y >= 0 && x < image.pixelWidth() && y < image.pixelHeight(),
                 "the test asks for a pixel outside of the picture");
    auto [red, green, blue, alpha] = image.pixel(x, y).components();
    auto byte = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    return {byte(red), byte(green), byte(blue), byte(alpha)};
}

bool isNear(const Bytes& a, const Bytes& b, int tolerance)
{
    return std::ranges::equal(a, b, [&](int one, int other) { return std::abs(one - other) <= tolerance; });
}

std::string hex(const Bytes& color)
{
    std::array<char, 16> text{};
    auto part = [&](std::size_t index) { return static_cast<unsigned>(color[index]); };
    std::snprintf(text.data(), text.size(), "%02x%02x%02x", part(0), part(1), part(2));
    if (color[3] != 255)
        std::snprintf(text.data() + 6, text.size() - 6, "%02x", part(3));
    return text.data();
}

Bytes fromHex(std::string_view text)
{
    precondition(text.size() == 6 || text.size() == 8, "colours are written rrggbb or rrggbbaa");
    Bytes color{0, 0, 0, 255};
    for (std::size_t index = 0; index * 2 < text.size(); ++index)
        color[index] = std::stoi(std::string(text.substr(index * 2, 2)), nullptr, 16);
    return color;
}

struct PixelRect {
    int left, top, right, bottom;
};

PixelRect pixels(const UIImage& image, CGRect in)
{
    auto down = [&](CGFloat value) { return static_cast<int>(std::floor(value * image.scale())); };
    auto up = [&](CGFloat value) { return static_cast<int>(std::ceil(value * image.scale())); };
    PixelRect rect{std::max(0, down(in.minX())), std::max(0, down(in.minY())),
                   std::min(image.pixelWidth(), up(in.maxX())), std::min(image.pixelHeight(), up(in.maxY()))};
    precondition(rect.left < rect.right && rect.top < rect.bottom,
                 "the test asks for a rectangle outside of the picture");
    return rect;
}

template <class Visit>
void forEachPixel(const UIImage& image, CGRect in, Visit visit)
{
    auto [left, top, right, bottom] = pixels(image, in);
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x)
            visit(x, y, bytesAt(image, x, y));
    }
}

} // namespace

std::string colorAt(const UIImage& image, CGPoint place)
{
    return hex(bytesAt(image, static_cast<int>(std::floor(place.x * image.scale())),
                       static_cast<int>(std::floor(place.y * image.scale()))));
}

CGRect inkBounds(const UIImage& image, CGRect in, int tolerance)
{
    auto [left, top, right, bottom] = pixels(image, in);
    const auto ground = bytesAt(image, left, top);
    PixelRect ink{right, bottom, left, top};
    forEachPixel(image, in, [&](int x, int y, const Bytes& color) {
        if (isNear(color, ground, tolerance))
            return;
        ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
               std::max(ink.bottom, y + 1)};
    });
    if (ink.left >= ink.right)
        return {};
    auto scale = image.scale();
    return CGRect::make(ink.left / scale, ink.top / scale, (ink.right - ink.left) / scale,
                        (ink.bottom - ink.top) / scale);
}

CGRect inkBounds(const UIImage& image, int tolerance)
{
    return inkBounds(image, {{}, image.size()}, tolerance);
}

std::string averageColor(const UIImage& image, CGRect in)
{
    std::array<double, 4> sum{};
    double count = 0;
    forEachPixel(image, in, [&](int, int, const Bytes& color) {
        for (std::size_t index = 0; index < sum.size(); ++index)
            sum[index] += color[index];
        ++count;
    });
    Bytes mean{};
    std::ranges::transform(sum, mean.begin(),
                           [&](double each) { return static_cast<int>(std::lround(each / count)); });
    return hex(mean);
}

double shareOf(const UIImage& image, std::string_view color, CGRect in, int tolerance)
{
    const auto wanted = fromHex(color);
    double count = 0;
    double all = 0;
    forEachPixel(image, in, [&](int, int, const Bytes& each) {
        ++all;
        count += isNear(each, wanted, tolerance) ? 1 : 0;
    });
    return count / all;
}

double differenceOf(const UIImage& a, const UIImage& b, int tolerance)
{
    precondition(a.pixelWidth() == b.pixelWidth() && a.pixelHeight() == b.pixelHeight(),
                 "the test compares pictures of different sizes");
    double count = 0;
    forEachPixel(a, {{}, a.size()}, [&](int x, int y, const Bytes& color) {
        count += isNear(color, bytesAt(b, x, y), tolerance) ? 0 : 1;
    });
    return count / (double(a.pixelWidth()) * a.pixelHeight());
}

UIImage mirrored(const UIImage& image)
{
    std::vector<std::byte> bytes;
    bytes.reserve(static_cast<std::size_t>(image.pixelWidth()) * static_cast<std::size_t>(image.pixelHeight())
                  * 4);
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = image.pixelWidth(); x-- > 0;) {
            for (int channel : bytesAt(image, x, y))
                bytes.push_back(static_cast<std::byte>(channel));
        }
    }
    return UIImage::fromPixels(bytes, image.pixelWidth(), image.pixelHeight(), image.scale());
}

} // namespace harness
