// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"

#include <vector>

namespace zelk {

// One piece for each character as a person counts them, with its attributes.
std::vector<platform::NSAttributedString> characters(const platform::NSAttributedString& text);

} // namespace zelk
