// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/ComparisonResult.h"

#include <string_view>

namespace zelk {

// Compares versions by their numbers between dots: 1.10 is after 1.9, and 1.2 is the same as 1.2.0. What is
// not entirely a whole number of 64 bits is left out, not counted as zero, so 1.x.3 is 1.3 and 1.0b2 is 1.
// Never fails. Any thread.
platform::ComparisonResult compareAppVersions(std::string_view version1, std::string_view version2);

} // namespace zelk
