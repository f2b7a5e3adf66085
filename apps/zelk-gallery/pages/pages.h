// SPDX-License-Identifier: MIT
#pragma once

#include "apps/zelk-gallery/frame/Page.h"

#include <string_view>
#include <vector>

namespace gallery {

// All pages in the order of the list, those of a group together.
const std::vector<Page>& allPages();

// Null when there is none of that name.
const Page* pageNamed(std::string_view name);

} // namespace gallery
