// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// The words that the toolkit itself puts on screen.
enum class SystemText { ok, cancel, back };

// In the language of the user's that comes first of those known here; English when none is. Chosen once. Any thread.
const std::string& systemText(SystemText text);

} // namespace platform
