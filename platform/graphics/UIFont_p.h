// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIFont.h"

#include <QtGui/QFont>

namespace platform {

struct FontFace {
    QFont font;
    CGFloat ascender = 0;
    CGFloat descender = 0;
    CGFloat lineHeight = 0;
    CGFloat xHeight = 0;
    CGFloat capHeight = 0;
    CGFloat columnWidth = 0;
};

inline const QFont& qFont(const UIFont& font)
{
    return font.face()->font;
}

} // namespace platform
