// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"

namespace gallery {

enum class BarWidth { narrow, wide };

// The switches: pages (in a narrow window), tint, text size, reduced motion, direction, appearance and code. Inside of an
// environment that has the settings.
platform::AnyView settingsBar(BarWidth width);

} // namespace gallery
