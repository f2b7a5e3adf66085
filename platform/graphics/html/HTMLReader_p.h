// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"

#include <string_view>

namespace platform {

// Reads HTML that guardedHTML() let pass. Main thread only.
NSAttributedString readHTML(std::string_view html);

} // namespace platform
