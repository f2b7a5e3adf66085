// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"

#include <span>
#include <string_view>

namespace zelk {

// The texts one after the other with `separator` between them. A separator looks like what stands before it:
// it takes the attributes of the last character so far, and none while there is no character.
// Requires: the separator is UTF-8.
platform::NSAttributedString joined(std::span<const platform::NSAttributedString> texts,
                                    std::string_view separator = {});

} // namespace zelk
