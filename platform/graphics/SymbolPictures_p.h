// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/SymbolImage.h"
#include "platform/graphics/UIColor.h"

#include <string_view>

namespace platform {

// Width by height of the symbol; 0 for an unknown name.
CGFloat symbolAspect(std::string_view name);

struct SymbolWish {
    FontWeight weight = FontWeight::regular;
    SymbolDirection direction = SymbolDirection::leftToRight;
    double width = 0, height = 0; // pixels, above 0; a picture has whole ones and is empty in the rest
    ColorComponents color;
};

// The picture, kept from the last time if there was one; empty for an unknown name.
UIImage symbolPicture(std::string_view name, const SymbolWish& wish);

} // namespace platform
