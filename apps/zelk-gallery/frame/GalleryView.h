// SPDX-License-Identifier: MIT
#pragma once

#include "apps/zelk-gallery/frame/GallerySettings.h"
#include "platform/uikit/UIViewController.h"

#include <memory>

namespace gallery {

// The whole window: the list of pages, the switches, and the page that is open. A window that is too narrow for the list
// has it behind a button.
std::shared_ptr<platform::UIViewController> makeGallery(std::shared_ptr<GallerySettings> settings);

} // namespace gallery
