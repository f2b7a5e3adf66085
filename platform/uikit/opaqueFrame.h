// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

namespace platform {

class UIView;

// A rectangle, in the superview's coordinates, in which the view on screen hides everything behind it: the largest of
// those, as far as `dirty` is concerned, that are easily found. Null when there is none. It may cut pixels in two.
CGRect opaqueFrame(const UIView& view, CGRect dirty);

} // namespace platform
