// SPDX-License-Identifier: MIT
#pragma once

#include "apps/zelk-gallery/frame/Page.h"
#include "platform/swiftui/AnyView.h"

#include <string>

namespace gallery {

// Where the code of an exhibit stands.
enum class CodePlace { none, below, beside };

// An exhibit: its title, the live view on a card, and its code.
platform::AnyView exhibitView(const std::string& page, const Exhibit& exhibit, CodePlace code);

// A page from its title down, for a place of that width.
platform::AnyView pageView(const Page& page, platform::CGFloat width, CodePlace code);

} // namespace gallery
