// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace zelk {

// Whether the dominant language of the whole text is Arabic, Hebrew, Persian or Urdu. False for every other
// language, those in the same scripts included, and where no language is recognized. Asks about the language,
// not about the characters: a layout asks the text's base direction instead. Any thread.
bool isRTL(std::string_view text);

} // namespace zelk
