// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"

#include <QtGui/QImage>

namespace platform {

class CGContext;
class UIImage;

// The picture's alpha, blurred by about that deviation (pixels), as a picture in one colour.
QImage blurredAlpha(const QImage& image, double deviation, const ColorComponents& color);

// Stretches a part of the picture, in its points, over `rect`.
void drawPart(CGContext& context, const UIImage& image, const CGRect& part, const CGRect& rect);

} // namespace platform
