// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace thumbnail {

// The fonts of a sandbox that has /usr and nothing else: no configuration of fonts, and no cache of what is in them.
// Empty where fonts are configured as usual. Otherwise sets FONTCONFIG_FILE to the configuration installed with the program,
// and gives the files to add by hand once graphics have started: a font for the interface and one for each script of `text`
// that has one installed. Call before graphics start.
std::vector<std::string> sandboxFontsFor(std::string_view text);

} // namespace thumbnail
