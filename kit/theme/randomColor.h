// SPDX-License-Identifier: MIT
#pragma once

#include "kit/theme/AnyColor.h"
#include "platform/foundation/RandomNumberGenerator.h"

namespace zelk {

// An opaque colour whose red, green and blue are drawn in that order, each evenly. A UIColor's component can be exactly 1,
// one time in 2^53 + 1; a Color's is always below.
template <AnyColor Made = platform::UIColor>
Made randomColor(
    platform::RandomNumberGenerator& generator = platform::SystemRandomNumberGenerator::shared());

template <>
platform::UIColor randomColor(platform::RandomNumberGenerator& generator);
template <>
platform::Color randomColor(platform::RandomNumberGenerator& generator);

} // namespace zelk
