// SPDX-License-Identifier: MIT
#include "platform/graphics/CGColor.h"

#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIImage.h"

#include <cmath>

namespace platform {

namespace {

// The curve that sRGB and Display P3 share, mirrored below zero.
double linear(double encoded)
{
    auto value = std::abs(encoded);
    return std::copysign(value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4), encoded);
}

double encoded(double linear)
{
    auto value = std::abs(linear);
    return std::copysign(value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1 / 2.4) - 0.055,
                         linear);
}

// Both spaces have the same white, so a matrix between the primaries is all.
ColorComponents sRGBOfDisplayP3(double red, double green, double blue, double alpha)
{
    auto r = linear(red), g = linear(green), b = linear(blue);
    return {encoded(1.2249401762805598 * r - 0.2249401762805598 * g),
            encoded(-0.0420569547096882 * r + 1.0420569547096881 * g),
            encoded(-0.0196375545903344 * r - 0.0786360455506319 * g + 1.0982736001409663 * b), alpha};
}

} // namespace

CGColor::CGColor(CGColorSpace space, const ColorComponents& values)
    : space_(space)
    , values_{values.red, values.green, values.blue, values.alpha}
{
}

CGColor CGColor::sRGB(double red, double green, double blue, double alpha)
{
    return {CGColorSpace::sRGB, {red, green, blue, alpha}};
}

CGColor CGColor::displayP3(double red, double green, double blue, double alpha)
{
    return {CGColorSpace::displayP3, {red, green, blue, alpha}};
}

CGColor CGColor::gray(double white, double alpha)
{
    return {CGColorSpace::deviceGray, {0, 0, white, alpha}};
}

CGColor CGColor::pattern(const UIImage& image)
{
    CGColor color(CGColorSpace::pattern, {});
    color.pattern_ = std::make_shared<const UIImage>(image);
    return color;
}

std::span<const double> CGColor::components() const
{
    switch (space_) {
    case CGColorSpace::sRGB:
    case CGColorSpace::displayP3:
        return values_;
    case CGColorSpace::deviceGray:
        return std::span(values_).last<2>();
    case CGColorSpace::pattern:
        break;
    }
    return std::span(values_).last<1>();
}

std::optional<ColorComponents> CGColor::inSRGB() const
{
    auto [red, green, blue, alpha] = values_;
    switch (space_) {
    case CGColorSpace::sRGB:
        return ColorComponents{red, green, blue, alpha};
    case CGColorSpace::displayP3:
        return sRGBOfDisplayP3(red, green, blue, alpha);
    case CGColorSpace::deviceGray:
        return ColorComponents{blue, blue, blue, alpha};
    case CGColorSpace::pattern:
        break;
    }
    return std::nullopt;
}

bool operator==(const CGColor& a, const CGColor& b)
{
    if (a.space_ != b.space_ || a.values_ != b.values_)
        return false;
    return a.pattern_ == b.pattern_ || (a.pattern_ && b.pattern_ && *a.pattern_ == *b.pattern_);
}

UIColor::UIColor(const CGColor& color)
{
    if (auto components = color.inSRGB())
        components_ = *components;
    else
        *this = pattern(*color.patternImage());
}

CGColor UIColor::cgColor() const
{
    if (pattern_)
        return CGColor::pattern(*pattern_);
    auto [red, green, blue, alpha] = components(currentAppearance());
    return CGColor::sRGB(red, green, blue, alpha);
}

} // namespace platform
