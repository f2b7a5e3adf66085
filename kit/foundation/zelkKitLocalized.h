// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zelk {

// The kit's text for `key` in the user's language: of the table "Zelk-Localizable" of zelkKitBundle(), which
// stops the process when it is missing. The key itself when there is no text for it, or one that reads "<null>".
// Any thread.
std::string zelkKitLocalized(std::string_view key);

} // namespace zelk
