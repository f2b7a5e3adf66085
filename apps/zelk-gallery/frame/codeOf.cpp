// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/codeOf.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <string>

namespace gallery {

std::string_view codeOf(std::string_view page, std::string_view title)
{
    auto regions = codeRegions();
    auto found = std::ranges::find_if(
        regions, [&](const CodeRegion& each) { return each.page == page && each.title == title; });
    platform::precondition(
        found != regions.end(),
        std::string("no code is marked [").append(title).append("] in page ").append(page));
    return found->code;
}

} // namespace gallery
