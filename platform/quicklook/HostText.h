// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace platform {

// A text of the preview's window in the user's language, from the tables that came with the program; `english`, which
// is its key, where there is none. The tables are read at the first call. Any thread.
std::string hostText(std::string_view english);
// The same with "%1$@", "%2$@"… replaced by `arguments`.
std::string hostText(std::string_view english, std::initializer_list<std::string> arguments);

} // namespace platform
