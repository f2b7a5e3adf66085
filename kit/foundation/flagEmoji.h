// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// The flag of a region by its two-letter code of ISO 3166, in capitals or not: "🇫🇷" of "fr". Nothing when
// there is no such region. Requires: the code is UTF-8. Any thread.
std::optional<std::string> flagEmoji(std::string_view regionCode);

} // namespace zelk
