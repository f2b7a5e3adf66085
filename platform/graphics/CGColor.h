// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace platform {

// What a colour's components mean.
enum class CGColorSpace {
    sRGB,       // red, green, blue; values out of 0...1 are colours out of its range
    displayP3,  // red, green, blue of the wider range of phone and newer desktop screens
    deviceGray, // white, as sRGB's three components alike
    pattern     // a picture; no component but alpha
};

// A colour in a colour space, never dynamic. A value; copies may cross threads.
class CGColor {
public:
    static CGColor sRGB(double red, double green, double blue, double alpha = 1);
    static CGColor displayP3(double red, double green, double blue, double alpha = 1);
    static CGColor gray(double white, double alpha = 1);
    static CGColor pattern(const UIImage& image);

    CGColorSpace colorSpace() const { return space_; }
    // Those of the space, then alpha. Valid while the colour lives.
    std::span<const double> components() const;
    double alpha() const { return values_[3]; }
    // Null unless this is a pattern. Valid while the colour lives.
    const UIImage* patternImage() const { return pattern_.get(); }
    // The same colour in sRGB, components out of 0...1 where it lies outside of that range; nothing for a pattern.
    std::optional<ColorComponents> inSRGB() const;

    friend bool operator==(const CGColor& a, const CGColor& b);

private:
    CGColor(CGColorSpace space, const ColorComponents& values);

    CGColorSpace space_;
    std::array<double, 4> values_; // alpha last; a grey stands in the third
    std::shared_ptr<const UIImage> pattern_;
};

} // namespace platform
