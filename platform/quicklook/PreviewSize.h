// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/uikit/UITraitCollection.h"

namespace platform {

class UIViewController;

// The size in points at which a window suits what `controller` shows: as wide and high as its content would like,
// within a reading size and the screen. Lays the controller's view out once, off the screen.
CGSize suitablePreviewSize(UIViewController& controller, const UITraitCollection& traits, CGSize screen);

} // namespace platform
