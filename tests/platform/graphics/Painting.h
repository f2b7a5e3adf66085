// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"

#include <gtest/gtest.h>

#include <cmath>

// Pictures looked at by their properties: which colour a point has, where ink is.
namespace platform {

inline UIImage painted(CGSize size, CGFloat scale, const std::function<void(CGContext&)>& draw,
                       ColorAppearance appearance = {})
{
    auto image = makeImage(size, scale, draw, appearance);
    EXPECT_TRUE(image.has_value());
    return image.value_or(UIImage());
}

inline int alphaAt(const UIImage& image, int x, int y)
{
    return static_cast<int>(std::lround(image.pixel(x, y).components().alpha * 255));
}

inline bool hasColor(const UIImage& image, int x, int y, const UIColor& expected)
{
    auto a = image.pixel(x, y).components();
    auto b = expected.components();
    auto near = [](double p, double q) { return std::abs(p - q) < 0.02; };
    if (near(a.alpha, 0) && near(b.alpha, 0))
        return true;
    return near(a.red, b.red) && near(a.green, b.green) && near(a.blue, b.blue) && near(a.alpha, b.alpha);
}

// The box of all pixels that are not quite transparent, in pixels; null when there are none.
inline CGRect inkBox(const UIImage& image)
{
    auto box = CGRect::null();
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = 0; x < image.pixelWidth(); ++x) {
            if (alphaAt(image, x, y) > 8)
                box = box.unionWith(CGRect::make(x, y, 1, 1));
        }
    }
    return box;
}

// The sum of all alpha, in whole pixels.
inline double inkAmount(const UIImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = 0; x < image.pixelWidth(); ++x)
            sum += image.pixel(x, y).components().alpha;
    }
    return sum;
}

} // namespace platform
