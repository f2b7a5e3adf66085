// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"

#include <QtGui/QImage>

namespace platform {

struct Bitmap {
    QImage image; // premultiplied, or opaque without alpha; its device pixel ratio is 1
};

// Null when the picture is empty.
QImage qImage(const UIImage& image);
UIImage imageFrom(QImage image, CGFloat scale);

} // namespace platform
