// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace gallery {

// A piece of a page's own source: what stands there between the markers `// [title]` and `// [/]`.
struct CodeRegion {
    std::string_view page;
    std::string_view title;
    std::string_view code;
};

// Written when the program is built; the last one is empty.
std::span<const CodeRegion> codeRegions();

// The code of an exhibit. Stops the program when the page's source marks none with that title.
std::string_view codeOf(std::string_view page, std::string_view title);

} // namespace gallery
