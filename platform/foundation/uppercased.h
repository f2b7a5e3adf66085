// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// The text in capitals, by Unicode's full mapping in no language's own way: "STRASSE" of "straße".
// Requires: `text` is well-formed UTF-8. Any thread.
std::string uppercased(std::string_view text);

} // namespace platform
