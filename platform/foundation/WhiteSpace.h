// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Whether line breaks, and what else controls the paper, are white space as well as the tab and the spaces of Unicode.
enum class LineBreaks { excluded, included };

// `text` without the white space that it begins with, or ends with. Ill-formed UTF-8 is none. Any thread.
std::string_view withoutLeadingWhiteSpace(std::string_view text, LineBreaks lineBreaks);
std::string_view withoutTrailingWhiteSpace(std::string_view text, LineBreaks lineBreaks);

} // namespace platform
