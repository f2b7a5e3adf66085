// SPDX-License-Identifier: MIT
#pragma once

#include "apps/zelk-gallery/frame/GallerySettings.h"
#include "platform/swiftui/AnyView.h"

namespace gallery {

// The list of pages in their groups. Inside of an environment that has the settings.
platform::AnyView sidebar();

} // namespace gallery
