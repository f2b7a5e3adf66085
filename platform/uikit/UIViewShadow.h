// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIColor.h"

namespace platform {

// What a view throws behind itself: the outline of all that it shows, moved, softened and coloured.
struct UIViewShadow {
    UIColor color = UIColor::black();
    CGFloat opacity = 0.33; // on top of the colour's own alpha, 0 to 1
    CGFloat radius = 3;     // of the blur's deviation, points; at most 100 counts
    CGSize offset{0, 2};    // points
    bool operator==(const UIViewShadow&) const = default;
};

} // namespace platform
