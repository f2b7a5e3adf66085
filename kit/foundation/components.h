// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"

#include <string_view>
#include <vector>

namespace zelk {

// The pieces between the occurrences of `separatedBy`, with their attributes. Empty pieces are kept: the pieces
// are one more than the separators, and an empty text is one empty piece. An empty separator occurs nowhere.
// Characters are compared as they are written: é and e with an accent differ.
// Requires: the separator is UTF-8.
std::vector<platform::NSAttributedString> components(const platform::NSAttributedString& text,
                                                     std::string_view separatedBy);

} // namespace zelk
