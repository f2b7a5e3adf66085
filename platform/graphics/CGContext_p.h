// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/CGContext.h"

class QPainter;

namespace platform {

// A context over an active painter, which outlives it. Takes over the painter's transform and clip and
// leaves both as they were; the scale is the device pixel ratio of the painter's device.
CGContext contextOver(QPainter& painter, ColorAppearance appearance = {});

// The painter that drawing goes to at the moment: that of the innermost layer.
QPainter& painterOf(CGContext& context);

} // namespace platform
