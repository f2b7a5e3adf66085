// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/GraphicsRuntime.h"

class QGuiApplication;

namespace platform {

// The one application object; started off-screen when nothing has started it.
QGuiApplication& guiApplication();

// Call before the first font is looked up: see warmFontConfiguration.
void awaitFontConfiguration();

} // namespace platform
