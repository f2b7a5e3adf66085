// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QImage>

#include <string_view>

namespace platform {

struct DesktopIcon {
    QImage image;            // null when the theme has none of that name
    bool isSymbolic = false; // made to be drawn in one colour
};

bool desktopIconExists(std::string_view name);
// The icon of the desktop's theme in about that size, pixels: no side is longer.
DesktopIcon desktopIcon(std::string_view name, int side);

} // namespace platform
