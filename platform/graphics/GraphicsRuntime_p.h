// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/GraphicsRuntime.h"

class QGuiApplication;

namespace platform {

// The one application object; started off-screen when nothing has started it.
QGuiApplication& guiApplication();

} // namespace platform
