// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/graphics/RoundedRect.h"

#include <optional>
#include <vector>

namespace platform {

// How a large area is painted in pieces, each of whole pixels, so that only a few of them need care. All rectangles are
// in the context's present coordinates. Nothing where that would not pay, or where the coordinates are turned.

// What of `dirty` lies in the shape, and apart from it what lies at its edge: at the round corners, and where a side cuts
// pixels in two.
struct ShapePieces {
    std::vector<CGRect> inside, edge;
};
std::optional<ShapePieces> piecesOf(const RoundedRect& shape, CGRect dirty, const CGContext& context);

// The smallest rectangle of whole pixels around one; the same where the coordinates are turned.
CGRect wholePixels(CGRect rect, const CGContext& context);
// Whether something opaque hides all that is behind it in each pixel of `dirty`.
bool isHiddenBy(CGRect opaque, CGRect dirty, const CGContext& context);
// What of `dirty` shows beside something opaque, which is to reach from side to side.
std::optional<std::vector<CGRect>> piecesBeside(CGRect opaque, CGRect dirty, const CGContext& context);

} // namespace platform
