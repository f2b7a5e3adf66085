// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/graphics/TextRows.h"

#include <optional>
#include <string_view>

namespace platform {

// Prints the text of a file on standard output: exactly, or as the rows of a terminal's pane, as file managers in terminals
// ask for it. With a pane, a text that has no cues is refused, as something else may preview it better, and a file of
// any size is read no further than the pane's rows need. A reader that has seen enough and goes away is no failure.
// Starts no graphics and reads no terminal. Gives the exit status: 0, or 1 with one line on standard error.
int printText(std::string_view program, const URL& url, const std::optional<TerminalPane>& pane);

} // namespace platform
